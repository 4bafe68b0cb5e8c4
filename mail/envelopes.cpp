#include "mail/envelopes.h"

#include "mail/mail_way_out.h"
#include "mail/recipient.h"

#include <algorithm>

std::vector<Envelope> envelopes_of(const std::vector<qsizetype> &places)
{
    std::vector<Envelope> envelopes;
    for (const qsizetype place : places) {
        if (envelopes.empty() || std::ssize(envelopes.back()) == recipients_per_envelope)
            envelopes.emplace_back();
        envelopes.back().push_back(place);
    }
    return envelopes;
}

std::vector<Envelope> envelopes_for(const QStringList &recipients)
{
    std::vector<qsizetype> plain;
    std::vector<qsizetype> beyond_ascii;
    for (qsizetype place = 0; place < recipients.size(); ++place)
        (needs_utf8(recipients[place]) ? beyond_ascii : plain).push_back(place);
    std::vector<Envelope> envelopes = envelopes_of(plain);
    std::ranges::move(envelopes_of(beyond_ascii), std::back_inserter(envelopes));
    return envelopes;
}
