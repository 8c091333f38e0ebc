// Runs the steps of `edit` through the editor's own commands, macros and history.
#include "edit_script.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/error.h"
#include "base/number_text.h"
#include "dsp/edit_effects.h"
#include "editor/document/edit_commands.h"
#include "editor/document/macros.h"
#include "word_values.h"

namespace brindlehum::cli {

const std::string_view editHelp =
    "  cut S S, copy S S, delete S S, trim S S, silence S S   of the sound between two times; trim keeps it\n"
    "  paste S                    what was cut or copied last, inserted at a time\n"
    "  insert-silence S SECONDS   so much silence at a time\n"
    "  normalize [DB] [S S]       loudest sample at a level (default -0.3 dB)\n"
    "  fade-in, fade-out, reverse, dc-fix, telephone, bitcrush, tape-saturation, stereo-widen, stutter,\n"
    "  ghost-echo, verb-tail, seamless-loop, texture, mono, swap [S S]   of a part, or of all\n"
    "  top-and-tails, hi-pass     of all\n"
    "  undo, redo                 of the steps before, 16 at most\n"
    "  seed N                     makes the halls of verb-tail and texture the same each time\n"
    "  float                      32-bit float samples instead of 24 bits\n"
    "  overwrite                  OUT.wav may be FILE itself\n";

namespace {

constexpr double longestTime = 24 * 3600;  // seconds

class Document {
public:
    Document(const Content& opened, double sampleRate) : rate_(sampleRate), history_(opened) {}

    const EditHistory& history() const { return history_; }
    void seed(double number) { seed_ = uint32_t(number); }
    int64_t frameAt(const std::optional<double>& seconds) const {
        const int64_t total = history_.now().frames();
        if (!seconds) { return total; }
        const auto frame = int64_t(std::llround(*seconds * rate_));
        if (frame > total) { throw Error("the sound ends at " + fixed(double(total) / rate_, 6) + " s"); }
        return frame;
    }
    int64_t framesIn(double seconds) const { return int64_t(std::llround(seconds * rate_)); }
    // Two values from `first` on are a range; without them it is the whole sound.
    EditState state(const ScriptStep& step, size_t first = 0) const {
        EditState state{history_.now(), std::nullopt, 0, history_.content().marks};
        if (step.values.size() < first + 2) { return state; }
        state.selection = FrameRange{frameAt(step.values[first]), frameAt(step.values[first + 1])};
        if (state.selection->length() < 1) { throw Error("there is nothing between these times"); }
        return state;
    }
    EditState at(const ScriptStep& step) const {
        return {history_.now(), std::nullopt, frameAt(step.values[0]), history_.content().marks};
    }
    void push(std::optional<EditStep> made, const char* refusal = "there is no sound") {
        if (!made) { throw Error(refusal); }
        history_.push(made->name, {std::move(made->state.sound), std::move(made->state.marks)});
    }
    void copy(const ScriptStep& step) { clip_ = EditCommands::copy(state(step), rate_); }
    void paste(const ScriptStep& step) {
        if (!clip_) { throw Error("nothing was cut or copied before"); }
        push(EditCommands::paste(at(step), rate_, *clip_));
    }
    void run(const MacroInfo& macro, const ScriptStep& step) {
        const EditState from = state(step);
        const auto random = seed_ ? EditOps::RandomEngine(*seed_) : EditOps::systemSeeded();
        push(brindlehum::run(macro.macro, from, rate_, {}, random),
             macro.macro == Macro::seamlessLoop ? "the range is too short to loop" : "there is no sound");
    }
    void step(bool (EditHistory::*move)(), const char* refusal) {
        if (!(history_.*move)()) { throw Error(refusal); }
    }
    double rate() const { return rate_; }

private:
    double rate_;  // Hz
    EditHistory history_;
    std::optional<Clip> clip_;
    std::optional<uint32_t> seed_;
};

struct Verb {
    std::string_view word;
    size_t least;  // values
    size_t most;
    void (*run)(Document& document, const ScriptStep& step);
};

void normalize(Document& d, const ScriptStep& step) {
    if (step.values.size() % 2 == 0) { return d.push(EditCommands::apply(d.state(step), d.rate(), "normalize", {})); }
    if (!step.values[0]) { throw Error("a level in dB must stand first"); }
    d.push(EditCommands::normalize(d.state(step, 1), *step.values[0], {}));
}

constexpr std::array verbs = {
    Verb{"cut", 2, 2,
         [](auto& d, const auto& s) {
             d.copy(s);
             d.push(EditCommands::cut(d.state(s), d.rate(), CutStyle::exact));
         }},
    Verb{"copy", 2, 2, [](auto& d, const auto& s) { d.copy(s); }},
    Verb{"delete", 2, 2,
         [](auto& d, const auto& s) { d.push(EditCommands::remove(d.state(s), d.rate(), CutStyle::exact)); }},
    Verb{"trim", 2, 2,
         [](auto& d, const auto& s) { d.push(EditCommands::trim(d.state(s), d.rate(), CutStyle::exact)); }},
    Verb{"silence", 2, 2, [](auto& d, const auto& s) { d.push(EditCommands::silence(d.state(s))); }},
    Verb{"paste", 1, 1, [](auto& d, const auto& s) { d.paste(s); }},
    Verb{"insert-silence", 2, 2,
         [](auto& d, const auto& s) {
             if (!s.values[1]) { throw Error("its length must be a number"); }
             d.push(EditCommands::insertSilence(d.at(s), d.framesIn(*s.values[1])), "that is less than a frame");
         }},
    Verb{"normalize", 0, 3, normalize},
    Verb{"undo", 0, 0, [](auto& d, const auto&) { d.step(&EditHistory::undo, "there is nothing to undo"); }},
    Verb{"redo", 0, 0, [](auto& d, const auto&) { d.step(&EditHistory::redo, "there is nothing to redo"); }},
    Verb{"seed", 1, 1, [](auto& d, const auto& s) { d.seed(s.values[0].value_or(0)); }},
};

const MacroInfo* macroOf(std::string_view id) {
    const auto found = std::ranges::find(macros(), id, [](const MacroInfo& each) { return std::string_view(each.id); });
    return found == macros().end() ? nullptr : &*found;
}

void runMacroOrEffect(Document& document, const ScriptStep& step) {
    if (const MacroInfo* macro = macroOf(step.verb)) { return document.run(*macro, step); }
    document.push(EditCommands::apply(document.state(step), document.rate(), step.verb, {}));
}

std::optional<Verb> verbOf(std::string_view word) {
    const auto found = std::ranges::find(verbs, word, &Verb::word);
    if (found != verbs.end()) { return *found; }
    const MacroInfo* macro = macroOf(word);
    if (!macro && !EditOps::effect(word)) { return std::nullopt; }
    const bool isWhole = macro && (macro->macro == Macro::topAndTails || macro->macro == Macro::hiPass);
    return Verb{word, 0, isWhole ? 0U : 2U, runMacroOrEffect};
}

bool isValue(const std::string& word) {
    return word == "end" || (!word.empty() && word.find_first_not_of("+-.0123456789eE") == std::string::npos &&
                             word.find_first_of("0123456789") != std::string::npos);
}

// Levels may be negative, times not.
std::optional<double> valueOf(const ScriptStep& step, const std::string& word) {
    if (word == "end") { return std::nullopt; }
    const bool isLevel = step.verb == "normalize" && step.values.empty();
    const std::string name = "step " + std::to_string(step.number) + ", " + step.verb;
    return numberAfter(name, word, isLevel ? -200 : 0, step.verb == "seed" ? 4294967295.0 : longestTime);
}

void checkCount(const ScriptStep& step, const Verb& verb) {
    const size_t count = step.values.size();
    // Beside the level of normalize, values come in pairs.
    const bool isHalf = verb.least == 0 && verb.most == 2 && count == 1;
    if (count >= verb.least && count <= verb.most && !isHalf) { return; }
    const std::string wanted = verb.least == verb.most ? std::to_string(verb.most)
                               : verb.most == 2        ? "0 or 2"
                                                       : "0 to " + std::to_string(verb.most);
    throw UsageError("step " + std::to_string(step.number) + ", \"" + step.text + "\": " + step.verb + " takes " +
                     wanted + (verb.most == 1 ? " value" : " values"));
}

}  // namespace

std::vector<ScriptStep> readSteps(Words words) {
    std::vector<ScriptStep> steps;
    for (size_t at = 0; at < words.size();) {
        ScriptStep step{int(steps.size()) + 1, words[at], {}, words[at]};
        const auto verb = verbOf(words[at++]);
        if (!verb) { throw UsageError("step " + std::to_string(step.number) + ": unknown step \"" + step.verb + "\""); }
        for (; at < words.size() && isValue(words[at]); ++at) {
            step.text += " " + words[at];
            step.values.push_back(valueOf(step, words[at]));
        }
        checkCount(step, *verb);
        steps.push_back(std::move(step));
    }
    return steps;
}

EditHistory runSteps(const std::vector<ScriptStep>& steps, const Content& opened, double sampleRate) {
    Document document(opened, sampleRate);
    for (const ScriptStep& step : steps) {
        try {
            verbOf(step.verb)->run(document, step);
        } catch (const Error& error) {
            throw Error("step " + std::to_string(step.number) + ", \"" + step.text + "\": " + error.what());
        }
    }
    return document.history();
}

}  // namespace brindlehum::cli
