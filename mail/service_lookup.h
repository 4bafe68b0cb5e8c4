#pragma once

#include "mail/service_records.h"

#include <QHostAddress>

#include <chrono>

/// The machine's name service as a resolver. All names are asked for at once; what has not come
/// within `patience` is given up.
/// @param name_server  null: the machine's own.
ServiceResolver name_service(std::chrono::milliseconds patience = std::chrono::seconds(5),
                             const QHostAddress &name_server = {});
