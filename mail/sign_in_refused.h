#pragma once

#include "platform/runtime_error.h"

/// A server did not take the credentials. Another password may help; for every other failure of a
/// server asking for one would only mislead.
class SignInRefused : public RuntimeError
{
public:
    using RuntimeError::RuntimeError;
};
