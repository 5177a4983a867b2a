#include "support/failed_memory/rows.h"

#include <new>
#include <utility>

#include <utillibrary/application/ORUsyslog.h>

namespace testing_support {

namespace {

long reportCount = 0;

void replaceAll(std::string& text, std::string const& from, std::string const& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& out, End end) {
    char const* const names[] = {"done",
                                 "std::bad_alloc",
                                 "a long",
                                 "an unsigned",
                                 "std::invalid_argument",
                                 "std::logic_error",
                                 "std::runtime_error"};
    return out << names[static_cast<int>(end)];
}

End Trial::endOf(std::function<void()> const& work) {
    try {
        work();
        return End::DONE;
    } catch (std::bad_alloc const&) {
        return End::BAD_ALLOC;
    } catch (long) {
        return End::LONG_CODE;
    } catch (unsigned) {
        return End::UNSIGNED_CODE;
    } catch (std::invalid_argument const&) {
        return End::INVALID_ARGUMENT;
    } catch (std::logic_error const&) {
        return End::LOGIC_ERROR;
    } catch (std::runtime_error const&) {
        return End::RUNTIME_ERROR;
    }
}

std::string shortName(std::string demangled) {
    std::pair<char const*, char const*> const names[] = {
        {"[abi:cxx11]", ""},
        {"com::halvorin::datatypes::", ""},
        {"com::halvorin::utilities::", ""},
        {"com::halvorin::application::oru::", ""},
        {"std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >",
         "std::string"},
        {"std::__cxx11::basic_string<wchar_t, std::char_traits<wchar_t>, std::allocator<wchar_t> >",
         "std::wstring"},
        {"std::vector<std::string, std::allocator<std::string > >", "std::vector<std::string>"},
        {"std::vector<std::string, std::allocator<std::string> >", "std::vector<std::string>"},
        {"std::vector<long, std::allocator<long> >", "std::vector<long>"},
        {"std::unordered_map<std::string, std::string, std::hash<std::string >, "
         "std::equal_to<std::string >, std::allocator<std::pair<std::string const, std::string > > "
         ">",
         "Map"},
        {"std::unordered_map<std::string, std::string, std::hash<std::string>, "
         "std::equal_to<std::string>, std::allocator<std::pair<std::string const, std::string> > >",
         "Map"},
        {"std::chrono::time_point<std::chrono::_V2::system_clock, std::chrono::duration<long, "
         "std::ratio<1l, 1000000000l> > >",
         "TimePoint"},
        {" >", ">"},
    };
    for (auto const& [from, to] : names)
        replaceAll(demangled, from, to);
    return demangled;
}

long takeReportCount() noexcept { return std::exchange(reportCount, 0); }

}  // namespace testing_support

// The host's own hook, which allocates nothing: a hook must not throw.
void com::halvorin::application::oru::writelog(std::string const& /*component*/, int /*level*/,
                                               std::string const& /*message*/,
                                               unsigned int /*code*/) {
    ++testing_support::reportCount;
}
