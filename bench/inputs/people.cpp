#include "bench/inputs/people.h"

#include <array>

namespace
{
struct Spelling
{
    const char *name;
    const char *ascii;
};

constexpr std::array<Spelling, 24> first_names = {{
    {"Anna", "anna"},       {"Bernd", "bernd"},       {"Céline", "celine"}, {"David", "david"},
    {"Emma", "emma"},       {"François", "francois"}, {"Greta", "greta"},   {"Henry", "henry"},
    {"Ingrid", "ingrid"},   {"Jürgen", "juergen"},    {"Karin", "karin"},   {"Lars", "lars"},
    {"Maria", "maria"},     {"Niels", "niels"},       {"Olivia", "olivia"}, {"Pavel", "pavel"},
    {"Quentin", "quentin"}, {"Rosa", "rosa"},         {"Søren", "soeren"},  {"Teresa", "teresa"},
    {"Ulrike", "ulrike"},   {"Victor", "victor"},     {"Wendy", "wendy"},   {"Zoë", "zoe"},
}};

constexpr std::size_t weber = 25;
constexpr std::array<Spelling, 40> last_names = {{
    {"Adams", "adams"},           {"Bauer", "bauer"},       {"Carter", "carter"},
    {"Dubois", "dubois"},         {"Evans", "evans"},       {"Fischer", "fischer"},
    {"García", "garcia"},         {"Hansen", "hansen"},     {"Ivanov", "ivanov"},
    {"Jensen", "jensen"},         {"Keller", "keller"},     {"Larsen", "larsen"},
    {"Martin", "martin"},         {"Novák", "novak"},       {"Olsen", "olsen"},
    {"Peters", "peters"},         {"Quinn", "quinn"},       {"Rossi", "rossi"},
    {"Schmidt", "schmidt"},       {"Taylor", "taylor"},     {"Underwood", "underwood"},
    {"Vogel", "vogel"},           {"Wagner", "wagner"},     {"Young", "young"},
    {"Zimmermann", "zimmermann"}, {"Weber", "weber"},       {"Becker", "becker"},
    {"Clark", "clark"},           {"Davies", "davies"},     {"Eriksson", "eriksson"},
    {"Fontaine", "fontaine"},     {"Grant", "grant"},       {"Hoffmann", "hoffmann"},
    {"Johansson", "johansson"},   {"Kowalski", "kowalski"}, {"Lehmann", "lehmann"},
    {"Moreau", "moreau"},         {"Nielsen", "nielsen"},   {"Petersen", "petersen"},
    {"Richter", "richter"},
}};

constexpr std::array domains = {
    "example.org",    "example.com",        "example.net",  "mail.example.org", "post.example.com",
    "office.example", "university.example", "shop.example", "city.example",     "letters.example",
};
} // namespace

Person person(std::size_t number)
{
    const Spelling &first = first_names[number / last_names.size() % first_names.size()];
    const Spelling &last = last_names[number % last_names.size()];
    const char *domain = domains[number / 7 % domains.size()];
    return {std::string(first.name) + ' ' + last.name,
            std::string(first.ascii) + '.' + last.ascii + std::to_string(number) + '@' + domain};
}

std::size_t last_weber_below(std::size_t limit)
{
    while (limit > 0 && --limit % last_names.size() != weber) {
    }
    return limit;
}
