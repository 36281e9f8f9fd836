#include "RenderOptions.h"

#include <charconv>
#include <functional>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace qm {

namespace {

double number(std::string_view text, double least, double most) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !(value >= least && value <= most))
        throw UsageError{"not a number from " + std::to_string(least) + " to " + std::to_string(most) + ": " +
                         std::string(text)};
    return value;
}

TimeArgument timeArgument(std::string_view text) {
    const bool isFrames = text.ends_with('f');
    if (isFrames) text.remove_suffix(1);
    const double value = number(text, 0, 1e12);
    if (isFrames && value != std::floor(value)) throw UsageError{"not a whole number of frames: " + std::string(text)};
    return {value, isFrames};
}

void setRate(Options& o, std::string_view text) {
    o.rate = number(text, -2.5, 2.5);
    if (std::abs(o.rate) < 0.35) throw UsageError{"the rate's magnitude is 0.35 to 2.5"};
}

std::pair<TimeArgument, TimeArgument> passage(std::string_view option, std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos) throw UsageError{std::string(option) + " takes A:B"};
    return {timeArgument(text.substr(0, colon)), timeArgument(text.substr(colon + 1))};
}

void setLoop(Options& o, std::string_view text) {
    std::tie(o.loopA, o.loopB) = passage("--loop", text);
}

void setAttacks(Options& o, std::string_view text) {
    o.question = Question::Attacks;
    std::tie(o.askedA, o.askedB) = passage("--attacks", text);
}

void setColumns(Options& o, std::string_view text) {
    const auto colon = text.rfind(':');
    if (colon == std::string_view::npos) throw UsageError{"--columns takes A:B:N"};
    o.question = Question::Columns;
    std::tie(o.askedA, o.askedB) = passage("--columns", text.substr(0, colon));
    o.columns = static_cast<std::int64_t>(number(text.substr(colon + 1), 1, 1e6));
}

void setStretcher(Options& o, std::string_view text) {
    if (text != "own" && text != "library") throw UsageError{"--stretcher takes own or library"};
    o.stretcher = text == "own" ? Stretcher::Own : Stretcher::Library;
}

std::int16_t toneSetting(std::string_view text) {
    return static_cast<std::int16_t>(number(text, 0, 256));
}

void setSeam(Options& o, std::string_view text) {
    if (text != "on" && text != "off") throw UsageError{"--seam takes on or off"};
    o.seam = text == "on";
}

const std::map<std::string_view, std::function<void(Options&, std::string_view)>> kValued = {
    {"--rate", setRate},
    {"--cents", [](Options& o, std::string_view t) { o.cents = number(t, -1200, 1200); }},
    {"--gain", [](Options& o, std::string_view t) { o.gain = number(t, 0, 1); }},
    {"--balance", [](Options& o, std::string_view t) { o.balance = number(t, -1, 1); }},
    {"--bass", [](Options& o, std::string_view t) { o.tone.bass = toneSetting(t); }},
    {"--treble", [](Options& o, std::string_view t) { o.tone.treble = toneSetting(t); }},
    {"--from", [](Options& o, std::string_view t) { o.from = timeArgument(t); }},
    {"--to", [](Options& o, std::string_view t) { o.to = timeArgument(t); }},
    {"--loop", setLoop},
    {"--attacks", setAttacks},
    {"--columns", setColumns},
    {"--stretcher", setStretcher},
    {"--passes",
     [](Options& o, std::string_view t) {
         o.passes = static_cast<std::int64_t>(number(t, 1, 1e6));
         o.passesGiven = true;
     }},
    {"--seam", setSeam},
};

const std::map<std::string_view, void (*)(Options&)> kFlags = {
    {"--stats", [](Options& o) { o.stats = true; }},
    {"--null", [](Options& o) { o.null = true; }},
    {"--identity", [](Options& o) { o.question = Question::Identity; }}};

void takeFiles(Options& o, const std::vector<std::string>& files) {
    const bool inputAlone = o.null || o.question != Question::None;
    if (files.size() != (inputAlone ? 1u : 2u))
        throw UsageError{inputAlone ? "--null, --attacks, --columns and --identity take IN alone"
                                    : "IN and OUT.wav are needed"};
    o.input = files[0];
    if (!inputAlone) o.output = files[1];
}

}  // namespace

Options parseOptions(int argc, char** argv) {
    Options o;
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (const auto flag = kFlags.find(argument); flag != kFlags.end()) {
            flag->second(o);
        } else if (const auto valued = kValued.find(argument); valued != kValued.end()) {
            if (++i == argc) throw UsageError{std::string(argument) + " needs a value"};
            valued->second(o, argv[i]);
        } else if (argument.starts_with("--")) {
            throw UsageError{"unknown option " + std::string(argument)};
        } else {
            files.emplace_back(argument);
        }
    }
    takeFiles(o, files);
    if (o.passesGiven && !o.loopA) throw UsageError{"--passes needs --loop"};
    return o;
}

}  // namespace qm
