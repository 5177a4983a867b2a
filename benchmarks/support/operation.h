#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "support/allocations.h"
#include "support/locale.h"

// An operation, and everyone who does it.
//
// An operation has a name, a pool of inputs, and for each input the result that is wanted, made by
// the plain call that defines it. A row is one who does it. Before a row is timed, its result for
// every input of the pool is held against the wanted one, and its allocations are counted; a row
// that gives something else is an error, and fails the run.
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

/// Notes what this machine lacks; the table says so.
void leaveOut(std::string const& what);

/// Empty where the two are equal; else a text that names them, as far as they can be written and
/// are short.
template <typename Result, typename Wanted>
std::string difference(Result const& result, Wanted const& wanted) {
    if (result == wanted) return {};
    std::ostringstream text;
    if constexpr (requires { text << result << wanted; }) {
        text << ": " << result << " instead of " << wanted;
    }
    constexpr std::size_t SHORT = 200;
    return "not the result that is wanted" + text.str().substr(0, SHORT);
}

/// A way to do an operation whose inputs are made into something of its own before the time runs.
template <typename Prepare, typename Run>
struct Prepared {
    Prepare prepare;
    Run run;
};

template <typename Prepare, typename Run>
Prepared<Prepare, Run> prepared(Prepare prepare, Run run) {
    return {std::move(prepare), std::move(run)};
}

/// The same thing again.
struct AsItIs {
    template <typename T>
    T const& operator()(T const& value) const {
        return value;
    }
};

/// No complaint about any result.
struct Anything {
    std::string operator()(auto const& /*input*/, auto const& /*result*/) const { return {}; }
};

template <typename Input, typename Way, typename Complain>
class Row {
public:
    /// Takes  way: a `Prepared`; complain: gives a text for a result that is not the wanted one,
    ///        and an empty one otherwise; note: stands beside the figures.
    Row(std::shared_ptr<std::vector<Input> const> inputs, Way way, Complain complain,
        std::string locale, std::string note)
        : inputs_(std::move(inputs)),
          way_(std::move(way)),
          complain_(std::move(complain)),
          locale_(std::move(locale)),
          note_(std::move(note)) {}

    void operator()(benchmark::State& state) {
        // Threads wait for each other where the loop begins and where it ends; the first one sets
        // the stage.
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

    // Not inlined: one copy of the work for the count and the clock, as lean as a host's loop.
    template <typename Run, typename Own>
    [[gnu::noinline]] static void runAll(Run& run, std::vector<Own> const& inputs) {
        for (Own const& input : inputs)
            benchmark::DoNotOptimize(run(input));
    }

    // Once for each row: are the results right, and what do they allocate?
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
    /// Takes  wanted: gives the result that is wanted for an input.
    template <typename Definition>
    Operation(std::string name, std::vector<Input> const& inputs, Definition wanted)
        : name_(std::move(name)),
          inputs_(std::make_shared<std::vector<Input> const>(inputs)),
          wanted_(std::move(wanted)) {}

    /// The same operation, with its rows timed on one thread and on two at once as well.
    Operation threaded() const {
        Operation copy = *this;
        copy.threaded_ = true;
        return copy;
    }

    /// The same operation under a named locale, as a host sets it: both as the global C++ locale
    /// and as the C locale. Where the machine has no such locale, there are no rows.
    Operation under(std::string const& locale) const {
        Operation copy = *this;
        copy.name_ += ", locale " + locale;
        copy.locale_ = locale;
        return copy;
    }

    // ---- rows
    //
    // run: gives the result for an input, or for what `prepared` made of it. Each thread of each
    // measurement works with a copy of it, so that it may keep an object that it writes to.
    // read: what the result says, in the words of the wanted one; not timed.

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

    /// Takes  why: in a few words, what is not the same.
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
    bool threaded_ = false;
};

template <typename Input, typename Definition>
Operation(std::string, std::vector<Input> const&, Definition)
    -> Operation<Input, std::decay_t<std::invoke_result_t<Definition&, Input const&>>>;

}  // namespace benchmarks
