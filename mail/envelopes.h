#pragma once

#include <QStringList>

#include <vector>

/// Places in a list of recipients that one envelope is for.
using Envelope = std::vector<qsizetype>;

/// Who goes into which envelope: at most recipients_per_envelope each, in order; addresses that
/// needs_utf8() have envelopes of their own, behind the others, so that where they cannot go nobody
/// else stays behind.
std::vector<Envelope> envelopes_for(const QStringList &recipients);

/// The places, in envelopes of at most recipients_per_envelope.
std::vector<Envelope> envelopes_of(const std::vector<qsizetype> &places);
