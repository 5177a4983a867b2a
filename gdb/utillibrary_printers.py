"""Shows the objects of utillibrary in gdb by what they contain.

gdb loads this file together with libutillibrary.so, from the folder that it loads such files from
automatically. An object may be uninitialised or damaged, so each read may fail, and no length is
believed: what cannot be read is shown as <unreadable>, and long contents are cut.
"""

import gdb
import gdb.printing

NAMESPACE = "com::halvorin::datatypes"
SHOWN_CHARACTERS = 200
SHOWN_BYTES = 16
NANOSECONDS_PER_SECOND = 1_000_000_000
SECONDS_PER_DAY = 86400

# How the value slot of a Variant is read, by type number. The numbers are part of the interface.
SLOT_MEMBERS = {
    1: ("UnsignedByte", "asUbyte"),
    2: ("Uint16", "asUint16"),
    3: ("Uint32", "asUint32"),
    4: ("Byte", "asByte"),
    5: ("Int16", "asInt16"),
    6: ("Int32", "asInt32"),
    7: ("Float", "asFloat"),
    8: ("Double", "asDouble"),
    10: ("Int64", "asInt64"),
    11: ("Uint64", "asUint64"),
    12: ("Boolean", "asUbyte"),
}
UNKNOWN, STRING, DATE_TIME, NULL = 0, 9, 13, 14


def civil_date(days):
    """The year, month and day of a day counted from 1970-01-01, in the Gregorian calendar."""
    days += 719468  # from 0000-03-01
    era, day_of_era = divmod(days, 146097)
    year_of_era = (day_of_era - day_of_era // 1460 + day_of_era // 36524 - day_of_era // 146096) // 365
    day_of_year = day_of_era - (365 * year_of_era + year_of_era // 4 - year_of_era // 100)
    march_month = (5 * day_of_year + 2) // 153
    day = day_of_year - (153 * march_month + 2) // 5 + 1
    month = march_month + 3 if march_month < 10 else march_month - 9
    return 400 * era + year_of_era + (1 if month <= 2 else 0), month, day


def time_text(seconds, nanoseconds):
    """A time as ISO 8601 text in UTC, with all nine digits of its nanoseconds."""
    if seconds == 0 and nanoseconds == 0:
        return "not set"
    days, second_of_day = divmod(seconds, SECONDS_PER_DAY)
    year, month, day = civil_date(days)
    date = f"{year:04d}-{month:02d}-{day:02d}"
    clock = f"{second_of_day // 3600:02d}:{second_of_day // 60 % 60:02d}:{second_of_day % 60:02d}"
    if nanoseconds < NANOSECONDS_PER_SECOND:
        return f"{date}T{clock}.{nanoseconds:09d}Z"
    return f"{date}T{clock}Z + {nanoseconds} ns"  # stored as given, not carried


def escaped(code):
    names = {0x0A: "\\n", 0x09: "\\t", 0x22: '\\"', 0x5C: "\\\\"}
    if code in names:
        return names[code]
    return chr(code) if 0x20 <= code < 0x7F else f"\\x{code:02x}"


def string_text(string, prefix, width):
    """The characters of a std::basic_string as a literal, zero characters included."""
    size = int(string["_M_string_length"])
    address = int(string["_M_dataplus"]["_M_p"])
    count = min(size, SHOWN_CHARACTERS)
    memory = bytes(gdb.selected_inferior().read_memory(address, count * width)) if count > 0 else b""
    codes = [int.from_bytes(memory[i : i + width], "little") for i in range(0, len(memory), width)]
    text = prefix + '"' + "".join(escaped(code) for code in codes) + '"'
    return text if count == size else f"{text}... ({size} characters)"


def narrow_text(string):
    return string_text(string, "", 1)


class Printer:
    """Gives the text of a value, or says that its memory cannot be read."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            return self.text()
        except (gdb.error, gdb.MemoryError, OverflowError, MemoryError):
            return "<unreadable>"


class TimePrinter(Printer):
    def text(self):
        return time_text(int(self.value["seconds_"]), int(self.value["nanoseconds_"]))


class VariantPrinter(Printer):
    def text(self):
        number = int(self.value["dataType"])
        if number == UNKNOWN:
            return "Unknown"
        if number == NULL:
            return "Null"
        if number == STRING:
            return "String " + string_text(self.value["wText"], "L", 4)
        if number == DATE_TIME:
            return "DateTime " + TimePrinter(self.value["timeVal"]).text()
        if number not in SLOT_MEMBERS:
            return f"type {number}, which does not exist"
        name, member = SLOT_MEMBERS[number]
        stored = self.value["uVal"][member]
        if name == "Boolean":
            return "Boolean " + ("true" if int(stored) != 0 else "false")
        return f"{name} {int(stored) if name not in ('Float', 'Double') else stored}"


class ByteStreamPrinter(Printer):
    def text(self):
        address, size = int(self.value["buffer_"]), int(self.value["size_"])
        if address == 0:
            return "empty"
        count = min(size, SHOWN_BYTES)
        memory = bytes(gdb.selected_inferior().read_memory(address, count)) if count > 0 else b""
        shown = "".join(f" {byte:02x}" for byte in memory)
        return f"{size} byte{'' if size == 1 else 's'}:{shown}{' ...' if count < size else ''}"


class LibraryPrinter(Printer):
    def text(self):
        state = "open" if int(self.value["module_"]) != 0 else "closed"
        return f"{narrow_text(self.value['name_'])} {state}"


class StringPrinter(Printer):
    def text(self):
        return narrow_text(self.value["value_"])


def build_printers():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("utillibrary")
    for name, printer in (
        ("xtime_t", TimePrinter),
        ("Variant", VariantPrinter),
        ("ByteStream", ByteStreamPrinter),
        ("Library", LibraryPrinter),
        ("String", StringPrinter),
    ):
        printers.add_printer(name, f"^{NAMESPACE}::{name}$", printer)
    return printers


gdb.printing.register_pretty_printer(gdb.current_objfile(), build_printers(), replace=True)
