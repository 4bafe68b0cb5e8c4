#include "bench/inputs/prose.h"

#include "bench/inputs/people.h"

#include <array>

namespace
{
constexpr std::array<const char *, 56> words = {
    "the",     "list",    "meeting", "of",      "Monday", "please",   "and",  "order",
    "we",      "answer",  "to",      "address", "for",    "delivery", "in",   "report",
    "members", "a",       "new",     "letter",  "is",     "invoice",  "with", "project",
    "on",      "garden",  "from",    "station", "by",     "question", "at",   "minutes",
    "this",    "library", "are",     "number",  "be",     "harbour",  "you",  "paper",
    "it",      "window",  "or",      "journey", "that",   "market",   "as",   "summer",
    "will",    "bridge",  "have",    "concert", "not",    "weather",  "can",  "holiday"};

constexpr std::array<const char *, 12> accented = {"Grüße", "façade",  "señor", "Straße",
                                                   "déjà",  "smörgås", "naïve", "Žižkov",
                                                   "Łódź",  "città",   "może",  "привет"};

constexpr std::size_t line_length = 70;
constexpr std::size_t one_address_in = 120; // words

std::string word(Random &random, bool ascii)
{
    if (random.below(one_address_in) == 0)
        return person(random.below(1'000'000)).address;
    if (!ascii && random.below(8) == 0)
        return accented[random.below(accented.size())];
    return words[random.below(words.size())];
}
} // namespace

std::string prose(Random &random, std::size_t size, bool ascii)
{
    std::string text;
    std::size_t line_start = 0;
    while (text.size() < size) {
        text += word(random, ascii);
        const bool full = text.size() - line_start > line_length;
        text += full ? '\n' : ' ';
        if (full && random.below(6) == 0)
            text += '\n';
        if (full)
            line_start = text.size();
    }
    return text + '\n';
}

std::string subject_line(Random &random, bool ascii)
{
    std::string line = random.below(3) == 0 ? "Re:" : "Fwd:";
    for (std::size_t count = random.between(3, 8); count > 0; --count) {
        line += ' ';
        line += !ascii && count == 3 ? accented[random.below(accented.size())]
                                     : words[random.below(words.size())];
    }
    return line;
}
