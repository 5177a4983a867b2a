// A host of the installed library. host_output.txt has the output that it must print.

#include <ctime>
#include <iostream>
#include <string>

#include <utillibrary/application/ORUsyslog.h>
#include <utillibrary/datatypes/Variant.h>
#include <utillibrary/datatypes/xtime.h>
#include <utillibrary/datatypes/xtime_conversions.h>
#include <utillibrary/utilities/SysStats.h>
#include <utillibrary/utilities/mktimeEx.h>

using namespace com::halvorin::datatypes;
using namespace com::halvorin::utilities;

void com::halvorin::application::oru::writelog(std::string const& component, int level,
                                               std::string const& message, unsigned int code) {
    std::cout << component << ' ' << level << " \"" << message << "\" 0x" << std::hex << code
              << std::dec << '\n';
}

int main() {
    Variant value(3.7);
    std::cout << value.toInt32() << ' ' << value.toString() << '\n';
    value = Variant::typeNames[7];
    std::cout << value.toString() << ' ' << Variant::typeName2Number(value.wText.c_str()) << '\n';
    value.dataType = 99;
    std::string const nothing = value.toString();
    std::cout << '[' << nothing << "]\n";

    xtime_t time(1709618889, 250000000);
    time.add(1.5F);
    std::cout << to_string(time) << ' ' << timeToYYYYString(time) << '\n';

    std::tm record{};
    record.tm_year = 124;
    record.tm_mon = 2;  // day 0 of March
    std::cout << mktimeEx(&record, 0) << ' ' << record.tm_mday << '\n';

    std::cout << (SysStats().uptime() > 0 ? "up" : "down") << '\n';
}
