"""Finds the places of the library's C++ code that can be changed, and what to change there.

The code is read as tokens, not compiled. It relies on the layout that clang-format gives: a binary
operator has a space on both sides, and the bracket of a template has none.
"""

import bisect
import collections
import dataclasses
import hashlib
import pathlib
import re

TOKEN = re.compile(
    r"""
      (?P<directive>(?m:^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*))
    | (?P<space>\s+)
    | (?P<comment>//[^\n]*|/\*.*?\*/)
    | (?P<string>(?:u8|[LuU])?R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|(?:u8|[LuU])?"(?:[^"\\\n]|\\.)*")
    | (?P<character>(?:u8|[LuU])?'(?:[^'\\\n]|\\.)+')
    | (?P<number>(?:0[xX][0-9a-fA-F']+(?:\.?[0-9a-fA-F]*[pP][+-]?[0-9]+)?|[0-9][0-9']*(?:\.[0-9']*)?(?:[eE][+-]?[0-9]+)?)[uUlLfFzZ]*)
    | (?P<name>[A-Za-z_][A-Za-z_0-9]*)
    | (?P<operator><=>|<<=|>>=|\.\.\.|->\*|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)
    """,
    re.VERBOSE | re.DOTALL,
)

# What replaces a binary operator.
BINARY = {
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
    "==": ["!="],
    "!=": ["=="],
    "&&": ["||"],
    "||": ["&&"],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["*"],
    "<<": [">>"],
    ">>": ["<<"],
    "&": ["|"],
    "|": ["&"],
    "^": ["&"],
    "+=": ["-="],
    "-=": ["+="],
    "*=": ["/="],
    "/=": ["*="],
    "%=": ["*="],
    "<<=": [">>="],
    ">>=": ["<<="],
    "&=": ["|="],
    "|=": ["&="],
    "^=": ["|="],
}

# What replaces a name.
WORDS = {"true": "false", "false": "true", "min": "max", "max": "min"}

# A statement that begins with one of these is not dropped: it declares, or the code after it would
# be undefined without it.
NOT_DROPPED = {
    "auto", "case", "catch", "char", "class", "constexpr", "default", "do", "else", "enum", "extern", "for",
    "friend", "if", "private", "protected", "public", "return", "static", "static_assert", "struct",
    "switch", "template", "try", "typedef", "union", "using", "while", "__extension__",
}  # fmt: skip


@dataclasses.dataclass
class Token:
    kind: str
    text: str
    begin: int
    end: int


@dataclasses.dataclass
class Mutant:
    file: str
    line: int
    function: str
    code: str  # the text of the line, without a comment
    change: str
    begin: int
    end: int
    replacement: str
    id: str = ""

    def applied(self, text):
        return text[: self.begin] + self.replacement + text[self.end :]


@dataclasses.dataclass
class Bracket:
    kind: str  # ( [ code class namespace enum list
    open: int
    function: str = ""
    returns: str | None = None
    statement: int = 0  # the token after which the current statement begins


def tokens_of(text):
    """The tokens, without code that only a newer compiler compiles."""
    text = re.sub(
        r"(?ms)^#ifdef __cpp_lib_\w+$.*?^#endif",
        lambda match: re.sub(r"[^\n]", " ", match.group()),
        text,
    )
    found = []
    for match in TOKEN.finditer(text):
        kind = match.lastgroup if match.lastgroup != "mark" else "string"
        if kind not in ("space", "comment", "directive"):
            found.append(Token(kind, match.group(), match.start(), match.end()))
    return found


def normal(text):
    return " ".join(text.split())


class Source:
    """The mutants of one file."""

    def __init__(self, name, text):
        self.name = name
        self.text = text
        self.tokens = tokens_of(text)
        self.line_starts = [0] + [match.end() for match in re.finditer("\n", text)]
        self.partner = {}
        self.function_of = [""] * len(self.tokens)
        self.returns_of = [None] * len(self.tokens)
        self.context_of = [""] * len(self.tokens)
        self.skipped = [False] * len(self.tokens)
        self.statements = []  # (first token, the semicolon)
        self.mutants = []
        self.pair_brackets()
        self.skip()
        self.read_structure()
        self.find()

    # ---- reading

    def is_(self, index, *texts):
        return 0 <= index < len(self.tokens) and self.tokens[index].text in texts

    def pair_brackets(self):
        stack = []
        for index, token in enumerate(self.tokens):
            if token.kind != "operator":
                continue
            if token.text in "([{":
                stack.append(index)
            elif token.text in ")]}":
                opened = stack.pop()
                self.partner[opened] = index
                self.partner[index] = opened

    def closing_angle(self, opened):
        """The token that closes the bracket of a template."""
        depth = 0
        index = opened
        while index < len(self.tokens):
            text = self.tokens[index].text
            if text == "<":
                depth += 1
            elif text in (">", ">>"):
                depth -= len(text)
                if depth <= 0:
                    return index
            elif text in "([{" and self.tokens[index].kind == "operator":
                index = self.partner[index]
            index += 1
        return opened

    def skip_range(self, first, last):
        for index in range(first, last + 1):
            self.skipped[index] = True

    def semicolon_after(self, index):
        while index < len(self.tokens) and self.tokens[index].text not in (";", "}"):
            if self.tokens[index].text in ("(", "[", "{"):
                index = self.partner[index]
            index += 1
        return min(index, len(self.tokens) - 1)

    def skip(self):
        """Marks what is never changed."""
        for index, token in enumerate(self.tokens):
            following = index + 1
            if token.text in ("static_assert", "alignas", "decltype", "noexcept", "requires"):
                if self.is_(following, "("):
                    self.skip_range(index, self.partner[following])
            elif token.text in ("using", "typedef", "friend"):
                self.skip_range(index, self.semicolon_after(index))
            elif token.text in ("template", "array") and self.is_(following, "<"):
                self.skip_range(index, self.closing_angle(following))
            elif token.text == "[" and self.is_(following, "["):
                self.skip_range(index, self.partner[index])
            elif token.text == "extern":
                self.skip_range(index, following)
            elif token.text == "operator":
                # The name of an operator, not its use.
                last = following
                while not self.is_(last, "("):
                    last += 1
                self.skip_range(index, self.partner[last] if last == following else last - 1)
            elif token.text == "=" and self.is_(following, "0") and self.is_(index + 2, ";"):
                if self.is_(index - 1, ")", "const", "noexcept", "override"):
                    self.skip_range(index, following)  # a pure virtual function
            elif token.text == "[" and index >= 2 and self.tokens[index - 1].kind == "name":
                before = self.tokens[index - 2]
                if before.kind == "name" and before.text != "return" or before.text in ("*", "&", ">"):
                    if before.end != self.tokens[index - 1].begin:
                        self.skip_range(index, self.partner[index])  # the size of an array

    def classify(self, index, outer):
        """The kind of the brace at `index`, the function that it begins, and what that returns."""
        previous = self.tokens[index - 1].text if index else ""
        first = outer.statement
        head = [self.tokens[i] for i in range(first, index)]
        words = [token.text for token in head]
        if outer.kind in ("(", "[", "list"):
            code = previous == ")" or previous == "]" or previous in ("mutable", "noexcept")
            if "->" in words and self.has_lambda(outer.open, index):
                code = code or self.tokens[index - 1].kind == "name" and self.after_arrow(index)
            return ("code", None, None) if code else ("list", None, None)
        if "namespace" in words[:2]:
            return "namespace", None, None
        if outer.kind == "code":
            if previous in (")", "]", "else", "do", "try", "mutable", "noexcept") or index == first:
                return "code", None, None
            if self.after_arrow(index):
                return "code", None, None
            if words[:1] and words[0] in ("struct", "class", "union"):
                return "class", None, None
            return "list", None, None
        # Among declarations.
        name, returns = self.function_head(first, index)
        if name is None:
            if "enum" in words:
                return "enum", None, None
            if any(word in ("struct", "class", "union") for word in words) and "=" not in words:
                return "class", None, None
            if previous in (")", "]") and "=" in words:
                return "code", None, None  # a lambda
            return "list", None, None
        # A brace after a member's name, in the list before a constructor's body.
        if self.tokens[index - 1].kind == "name" and ":" in words and not self.after_arrow(index):
            if previous not in ("const", "noexcept", "override", "final", "try"):
                return "list", None, None
        return "code", name, returns

    def has_lambda(self, first, last):
        return any(self.tokens[i].text == "[" for i in range(first, last))

    def after_arrow(self, index):
        """Whether the brace follows `) -> type`."""
        i = index - 1
        while i >= 0 and (self.tokens[i].kind == "name" or self.tokens[i].text in ("::", "<", ">", "*", "&")):
            i -= 1
        return self.is_(i, "->") and self.is_(i - 1, ")", "const", "noexcept", "mutable")

    def function_head(self, first, last):
        index = first
        while index < last:
            text = self.tokens[index].text
            if text == "=":
                return None, None
            if text == "template" and self.is_(index + 1, "<"):
                index = self.closing_angle(index + 1) + 1
                continue
            if text == "operator":
                opened = index + 1
                while not self.is_(opened, "(") or opened == index + 1 and self.is_(opened + 1, ")"):
                    opened += 1
                name = "operator" + "".join(self.tokens[i].text for i in range(index + 1, opened))
                returns = " ".join(self.tokens[i].text for i in range(first, index))
                return name, returns
            if text == "(" and self.tokens[index - 1].kind == "name" and not self.skipped[index]:
                name = self.tokens[index - 1].text
                returns = " ".join(
                    self.tokens[i].text for i in range(first, index - 1) if not self.skipped[i]
                )
                return name, returns
            if text in ("(", "["):
                index = self.partner[index]
            index += 1
        return None, None

    def read_structure(self):
        stack = [Bracket("namespace", -1)]
        for index, token in enumerate(self.tokens):
            top = stack[-1]
            text = token.text if token.kind in ("operator", "name") else ""
            if text in ("}", ")", "]"):
                closed = stack.pop()
                top = stack[-1]
                if text == "}" and closed.kind in ("code", "class", "namespace", "enum"):
                    # A lambda or a class goes on to its semicolon.
                    if top.kind in ("code", "class", "namespace") and not self.is_(
                        index + 1, ";", ",", ")", "("
                    ):
                        top.statement = index + 1
            self.function_of[index] = stack[-1].function
            self.returns_of[index] = stack[-1].returns
            self.context_of[index] = stack[-1].kind
            if text in ("(", "["):
                stack.append(Bracket(text, index, top.function, top.returns, index + 1))
            elif text == "{":
                kind, name, returns = self.classify(index, top)
                if name is None:
                    name, returns = top.function, top.returns
                    if kind == "code" and self.begins_lambda(index, top):
                        returns = None
                if kind == "namespace":
                    self.skip_range(top.statement, index)
                stack.append(Bracket(kind, index, name, returns, index + 1))
            elif text == ";":
                if top.kind == "code" and top.statement < index:
                    self.statements.append((top.statement, index))
                top.statement = index + 1
            elif text == ":" and top.kind in ("code", "class"):
                if self.is_(top.statement, "case", "default", "public", "private", "protected"):
                    top.statement = index + 1
            elif text in ("else", "do"):
                top.statement = index + 1
            elif text == ")" and stack[-1].kind == "code":
                opened = self.partner[index]
                if self.is_(opened - 1, "if", "for", "while", "switch", "constexpr"):
                    stack[-1].statement = index + 1

    def begins_lambda(self, index, outer):
        if outer.kind in ("(", "[", "list"):
            return True
        first = outer.statement
        return self.is_(index - 1, "]") or any(
            self.is_(i, "=", "return") for i in range(first, index)
        ) or self.is_(first, "return")

    # ---- changes

    def line_of(self, position):
        return bisect.bisect_right(self.line_starts, position)

    def code_of(self, line):
        begin = self.line_starts[line - 1]
        end = self.line_starts[line] if line < len(self.line_starts) else len(self.text)
        return normal(re.sub(r"\s+//.*", "", self.text[begin:end]))

    def add(self, index, begin, end, replacement, change):
        line = self.line_of(begin)
        self.mutants.append(
            Mutant(self.name, line, self.function_of[index], self.code_of(line), change, begin, end, replacement)
        )

    def swap(self, index, replacement):
        token = self.tokens[index]
        self.add(index, token.begin, token.end, replacement, f"{token.text} -> {replacement}")

    def text_of(self, first, last):
        return self.text[self.tokens[first].begin : self.tokens[last].end]

    def find(self):
        for index, token in enumerate(self.tokens):
            if self.skipped[index]:
                continue
            if token.kind == "number":
                self.change_number(index)
            elif token.kind == "character":
                self.change_character(index)
            elif token.kind == "string":
                if not token.text.endswith('""'):
                    prefix = token.text[: token.text.index('"')].rstrip("R")
                    self.swap(index, prefix + '""')
            elif token.kind == "operator":
                self.change_operator(index)
            elif token.text in WORDS:
                if token.text in ("true", "false") or self.is_(index - 1, "::") and self.is_(index + 1, "("):
                    self.swap(index, WORDS[token.text])
            elif token.text in ("if", "while", "for") and self.is_(index + 1, "("):
                self.negate(index)
            elif token.text == "return":
                self.change_return(index)
        for first, last in self.statements:
            self.drop(first, last)

    def change_number(self, index):
        if re.fullmatch("0[xX].*[pP].*", self.tokens[index].text):
            mantissa, _, exponent = self.tokens[index].text.partition("p")
            self.swap(index, f"{mantissa}p{int(exponent) + 1}")
            self.swap(index, f"{mantissa}p{int(exponent) - 1}")
            return
        match = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[0-9'.eE+-]+?)([uUlLfFzZ]*)", self.tokens[index].text)
        digits, suffix = match.group(1).replace("'", ""), match.group(2)
        if re.fullmatch(r"0[xX].*", digits):
            value = int(digits, 16)
            others = [f"0x{other:X}" for other in (value + 1, value - 1, 0) if other >= 0 and other != value]
        elif re.search(r"[.eE]", digits):
            value = float(digits)
            others = [repr(other) for other in (value + 1, value * 2, 0.0) if other != value]
        else:
            value = int(digits, 8 if re.fullmatch("0[0-7]+", digits) else 10)
            others = [str(other) for other in (value + 1, value - 1, 0) if other >= 0 and other != value]
        for other in dict.fromkeys(others):
            self.swap(index, other + suffix)

    def change_character(self, index):
        text = self.tokens[index].text
        prefix = text[: text.index("'")]
        value = ord(text[len(prefix) + 1 : -1].encode().decode("unicode_escape"))
        for other in (value + 1, value - 1):
            if 0 <= other < 127:
                shown = chr(other) if 32 <= other and chr(other) not in "'\\" else f"\\x{other:02x}"
                self.swap(index, f"{prefix}'{shown}'")

    def change_operator(self, index):
        token = self.tokens[index]
        text = token.text
        around = self.text[token.begin - 1 : token.begin].isspace(), self.text[token.end : token.end + 1].isspace()
        if text in BINARY and all(around):
            for other in BINARY[text]:
                self.swap(index, other)
        elif text in ("++", "--"):
            self.swap(index, "--" if text == "++" else "++")
        elif text in ("!", "~", "-") and not around[1]:
            before = self.tokens[index - 1]
            if before.kind in ("operator",) and before.text not in (")", "]") or before.text == "return":
                if not (text == "~" and before.text in (";", "{", "}", ":")):  # a destructor
                    self.add(index, token.begin, token.end, "", f"{text} dropped")
        elif text == "?":
            self.swap_results(index)

    def swap_results(self, index):
        depth = 0
        colon = None
        i = index + 1
        while i < len(self.tokens):
            text = self.tokens[i].text if self.tokens[i].kind == "operator" else ""
            if text in ("(", "[", "{"):
                i = self.partner[i]
            elif text == "?":
                depth += 1
            elif text == ":" and depth:
                depth -= 1
            elif text == ":" and colon is None:
                colon = i
            elif text in (";", ",", ")", "]", "}"):
                break
            i += 1
        if colon is None or i <= colon + 1:
            return
        one, other = self.text_of(index + 1, colon - 1), self.text_of(colon + 1, i - 1)
        self.add(
            index,
            self.tokens[index + 1].begin,
            self.tokens[i - 1].end,
            f"({other}) : ({one})",
            "? : with its results swapped",
        )

    def negate(self, index):
        word = self.tokens[index].text
        opened = index + 1
        closed = self.partner[opened]
        parts = [opened]
        i = opened + 1
        while i < closed:
            if self.tokens[i].text in ("(", "[", "{"):
                i = self.partner[i]
            elif self.tokens[i].text == ";":
                parts.append(i)
            i += 1
        parts.append(closed)
        if word == "for":
            if len(parts) != 4:
                return
            first, last = parts[1] + 1, parts[2] - 1
        else:
            first, last = parts[-2] + 1, closed - 1
        if first > last:
            return
        condition = self.text_of(first, last)
        begin, end = self.tokens[first].begin, self.tokens[last].end
        declares = any(self.tokens[i].text == "=" for i in range(first, last)) and (
            self.tokens[first].text == "auto" or self.tokens[first + 1].kind == "name"
        )
        if declares:
            if word == "if":
                self.add(index, begin, end, condition + "; false", "if (...) -> if (...; false)")
            return
        # change_operator makes these mutants: it drops a leading `!`, and changes a single comparison.
        plain = [self.tokens[i].text for i in range(first, last + 1)]
        if plain[0] == "!" and not {"&&", "||"} & set(plain):
            return
        if len([t for t in plain if t in ("==", "!=", "<", ">", "<=", ">=")]) == 1 and not {"&&", "||"} & set(plain):
            return
        self.add(index, begin, end, f"!({condition})", f"{word} (...) -> {word} (!(...))")

    def change_return(self, index):
        last = self.semicolon_after(index) - 1
        if self.context_of[index] != "code" or last <= index:
            return
        returns = self.returns_of[index]
        value = self.text_of(index + 1, last)
        begin, end = self.tokens[index + 1].begin, self.tokens[last].end
        if returns is None or value in ("true", "false", "{}", "std::nullopt", "nullptr", "*this", "0"):
            return
        bare = re.sub(r"\b(static|inline|constexpr|friend|explicit|virtual|UTILLIBRARY_\w+)\b", "", returns).strip()
        bare = re.sub(r"(\w+ ::\s*)+$", "", bare + " ").strip()  # of a member that is defined outside its class
        if not bare:
            bare = self.function_of[index].removeprefix("operator")  # a conversion
        if re.search(r"&$|\bauto$|\bvoid$", bare):
            return
        if bare.startswith("std :: optional"):
            self.add(index, begin, end, "std::nullopt", "return ... -> return std::nullopt")
        elif bare == "bool":
            self.add(index, begin, end, f"!({value})", "return ... -> return !(...)")
        else:
            self.add(index, begin, end, "{}", "return ... -> return {}")

    def drop(self, first, last):
        token = self.tokens[first]
        if self.skipped[first] or token.text in NOT_DROPPED:
            return
        name = self.declared(first, last)
        if name is not None:
            closed = last
            while closed < len(self.tokens) and not self.is_(closed, "}"):
                if self.tokens[closed].text in ("(", "[", "{"):
                    closed = self.partner[closed]
                closed += 1
            later = self.text[self.tokens[last].end : self.tokens[closed].begin]
            if re.search(rf"\b{name}\b", later):
                return
        end = self.tokens[last].end
        self.add(first, token.begin, end, ";", f"dropped: {normal(self.text[token.begin:end])}")

    def declared(self, first, last):
        """The name that a statement declares, or None."""
        index = first
        while index < last:
            token = self.tokens[index]
            following = self.tokens[index + 1]
            if token.text == "(" or token.text == "=" or token.kind == "operator" and token.text in ("[", "{", "<<"):
                return None
            if token.text == "<" and following.kind == "name":
                index = self.closing_angle(index)
                token = self.tokens[index]
                following = self.tokens[index + 1]
            separate = token.end != following.begin
            if separate and following.kind == "name" and token.text not in ("return", "throw", "new", "delete"):
                if token.kind == "name" or token.text in ("*", "&", ">", ">>"):
                    if self.is_(index + 2, "=", ";", "(", "{", "["):
                        return following.text
            index += 1
        return None


# ---- the tree


def files_of(tree):
    """The files that are changed, in order."""
    root = pathlib.Path(tree)
    return sorted(
        str(path.relative_to(root)) for path in root.glob("utillibrary/**/*") if path.suffix in (".cpp", ".h")
    )


def unit_of(file):
    """The unit that a file belongs to: its name without the ending."""
    return re.sub(r"_internal$", "", pathlib.Path(file).stem)


def is_public(file):
    return file.endswith(".h") and not file.endswith("_internal.h") and "/internal/" not in file


def all_mutants(tree):
    found = []
    times = collections.Counter()
    in_line = collections.Counter()
    for file in files_of(tree):
        text = (pathlib.Path(tree) / file).read_text(encoding="utf-8")
        for mutant in sorted(Source(file, text).mutants, key=lambda m: (m.begin, m.end)):
            key = (file, mutant.function, mutant.code, mutant.change)
            times[key] += 1
            digest = hashlib.sha256("\n".join((*key, str(times[key]))).encode()).hexdigest()
            mutant.id = digest[:10]
            place = (file, mutant.line, mutant.change)
            in_line[place] += 1
            if in_line[place] > 1:
                mutant.change += f" #{in_line[place]}"
            found.append(mutant)
    return found
