#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "support/allocations.h"
#include "support/locale.h"

// An operation, and the libraries that do it.
//
// An operation has a name, a pool of inputs, and the expected result for each input, which the
// plain call that defines it makes. A row is one way to do it. Before a row is timed, its result
// for each input is compared with the expected one, and its allocations are counted. A row that
// gives another result fails the run.
//
//     Operation const toText("int to text", numbers, streamed);
//     toText.plain("std::wostringstream", streamed);
//     toText.ours(prepared(asVariant, [](Variant const& v) { return v.toString(); }));
//     toText.peer("Qt", prepared(asQVariant, toQString), inBytes);
//
// A row is named "operation/role/who"; the table is made from that.
namespace benchmarks {

/// Adds the rows of a program. Each program, one for a unit, defines it.
void addRows();

/// What part a row plays in the table.
enum class Role {
    OURS,
    PLAIN,      // the libc or stream call that defines the behaviour
    PEER,       // another library that does the same job
    OTHER_JOB,  // another library that does something like it; never the best peer
    FLOOR,      // what the operation cannot do without: a copy, one allocation, one system call
};

std::string rowName(std::string const& operation, Role role, std::string const& who);

/// Notes a library or locale that this machine lacks; the table says so.
void leaveOut(std::string const& what);

/// Empty if the two are equal; else a string that contains both, if they can be written and are
/// short.
template <typename Result, typename Wanted>
std::string difference(Result const& result, Wanted const& wanted) {
    if (result == wanted) return {};
    std::ostringstream text;
    if constexpr (requires { text << result << wanted; }) {
        text << ": " << result << " instead of " << wanted;
    }
    constexpr std::size_t SHOWN_SIZE = 200;
    return "not the expected result" + text.str().substr(0, SHOWN_SIZE);
}

/// A way to do an operation. Its inputs are converted to another type before the clock starts.
template <typename Prepare, typename Run>
struct Prepared {
    Prepare prepare;
    Run run;
};

template <typename Prepare, typename Run>
Prepared<Prepare, Run> prepared(Prepare prepare, Run run) {
    return {std::move(prepare), std::move(run)};
}

/// Its argument, unchanged.
struct AsItIs {
    template <typename T>
    T const& operator()(T const& value) const {
        return value;
    }
};

/// Accepts every result.
struct Anything {
    std::string operator()(auto const& /*input*/, auto const& /*result*/) const { return {}; }
};

template <typename Input, typename Way, typename Complain>
class Row {
public:
    /// Takes  way: a `Prepared`; complain: gives an empty string for the expected result, and a
    ///        message for any other; note: is printed next to the figures.
    Row(std::shared_ptr<std::vector<Input> const> inputs, Way way, Complain complain,
        std::string locale, std::string note)
        : inputs_(std::move(inputs)),
          way_(std::move(way)),
          complain_(std::move(complain)),
          locale_(std::move(locale)),
          note_(std::move(note)) {}

    void operator()(benchmark::State& state) {
        // Threads wait for each other before and after the loop; the first one sets the locale and
        // checks the results.
        bool const first = state.thread_index() == 0;
        std::optional<ScopedLocale> scope;
        if (first && !locale_.empty()) scope.emplace(locale_);
        auto const own = ownInputs();
        auto run = way_.run;
        if (first && !allocations_) inspect(state, own, run);

        auto const batch = static_cast<benchmark::IterationCount>(own.size());
        while (state.KeepRunningBatch(batch))
            runAll(run, own);
        if (first) {
            state.counters["allocations"] = allocations_.value_or(0);
            state.SetLabel(note_);
        }
    }

private:
    auto ownInputs() const {
        std::vector<std::decay_t<decltype(way_.prepare(inputs_->front()))>> own;
        own.reserve(inputs_->size());
        for (Input const& input : *inputs_)
            own.push_back(way_.prepare(input));
        return own;
    }

    // Not inlined: the same code is counted and timed, and is as simple as a host's loop.
    template <typename Run, typename Own>
    [[gnu::noinline]] static void runAll(Run& run, std::vector<Own> const& inputs) {
        for (Own const& input : inputs)
            benchmark::DoNotOptimize(run(input));
    }

    // Compares the results and counts the allocations, once for each row.
    template <typename Own, typename Run>
    void inspect(benchmark::State& state, Own const& own, Run& run) {
        for (std::size_t i = 0; i < own.size(); ++i) {
            std::string const complaint = complain_((*inputs_)[i], run(own[i]));
            if (!complaint.empty()) return state.SkipWithError(complaint.c_str());
        }
        unsigned long const before = allocations();
        runAll(run, own);
        allocations_ =
            static_cast<double>(allocations() - before) / static_cast<double>(own.size());
    }

    std::shared_ptr<std::vector<Input> const> inputs_;
    Way way_;
    Complain complain_;
    std::string locale_;
    std::string note_;
    std::optional<double> allocations_;  // per operation, once they are counted
};

template <typename Input, typename Wanted>
class Operation {
public:
    /// Takes  wanted: gives the expected result for an input.
    template <typename Definition>
    Operation(std::string name, std::vector<Input> const& inputs, Definition wanted)
        : name_(std::move(name)),
          inputs_(std::make_shared<std::vector<Input> const>(inputs)),
          wanted_(std::move(wanted)) {}

    /// The same operation, with each row timed on one thread and on two threads.
    Operation threaded() const {
        Operation copy = *this;
        copy.threaded_ = true;
        return copy;
    }

    /// The same operation under a named locale, as a host sets it: both as the global C++ locale
    /// and as the C locale. If the machine has no such locale, there are no rows.
    Operation under(std::string const& locale) const {
        Operation copy = *this;
        copy.name_ += ", locale " + locale;
        copy.locale_ = locale;
        return copy;
    }

    /// The same operation without the rows of other libraries, except those that are named here.
    Operation withPeers(std::set<std::string> const& names) const {
        Operation copy = *this;
        copy.peers_ = names;
        return copy;
    }

    // ---- rows
    //
    // run: gives the result for an input, or for what `prepared` made of it. Each thread of each
    // measurement has a copy of `run`, so `run` may have an object that it writes to.
    // read: converts the result to the type of the expected one; not timed.

    template <typename Run, typename Read = AsItIs>
    void ours(Run run, Read read = {}) const {
        add(Role::OURS, "utillibrary", "", std::move(run), compared(std::move(read)));
    }

    template <typename Run, typename Read = AsItIs>
    void plain(std::string const& who, Run run, Read read = {}) const {
        add(Role::PLAIN, who, "", std::move(run), compared(std::move(read)));
    }

    template <typename Run, typename Read = AsItIs>
    void peer(std::string const& who, Run run, Read read = {}) const {
        add(Role::PEER, who, "", std::move(run), compared(std::move(read)));
    }

    /// Takes  why: what is different, in a few words.
    template <typename Run>
    void otherJob(std::string const& who, std::string const& why, Run run) const {
        add(Role::OTHER_JOB, who, why, std::move(run), Anything());
    }

    template <typename Run>
    void floor(std::string const& who, Run run) const {
        add(Role::FLOOR, who, "", std::move(run), Anything());
    }

private:
    template <typename Read>
    auto compared(Read read) const {
        return [wanted = wanted_, read = std::move(read)](Input const& input, auto const& result) {
            return difference(read(result), wanted(input));
        };
    }

    template <typename Run, typename Complain>
    void add(Role role, std::string const& who, std::string const& note, Run run,
             Complain complain) const {
        add(role, who, note, prepared(AsItIs(), std::move(run)), std::move(complain));
    }

    template <typename Prepare, typename Run, typename Complain>
    void add(Role role, std::string const& who, std::string const& note, Prepared<Prepare, Run> way,
             Complain complain) const {
        bool const isPeer = role == Role::PEER || role == Role::OTHER_JOB;
        if (isPeer && peers_ && !peers_->contains(who)) return;
        if (!locale_.empty() && !hasLocale(locale_)) return leaveOut("locale " + locale_);
        Row<Input, Prepared<Prepare, Run>, Complain> const row(inputs_, std::move(way),
                                                               std::move(complain), locale_, note);
        std::string const name = rowName(name_, role, who);
        benchmark::RegisterBenchmark(name.c_str(), row);
        if (threaded_) {
            benchmark::RegisterBenchmark(name.c_str(), row)->Threads(1)->Threads(2)->UseRealTime();
        }
    }

    std::string name_;
    std::shared_ptr<std::vector<Input> const> inputs_;
    std::function<Wanted(Input const&)> wanted_;
    std::string locale_;
    std::optional<std::set<std::string>> peers_;  // without a value: all
    bool threaded_ = false;
};

template <typename Input, typename Definition>
Operation(std::string, std::vector<Input> const&, Definition)
    -> Operation<Input, std::decay_t<std::invoke_result_t<Definition&, Input const&>>>;

}  // namespace benchmarks
