#pragma once

#include <QString>

#include <chrono>
#include <functional>

/// The longest that a token command may take, and what gives the windows a turn meanwhile.
struct TokenPatience
{
    std::chrono::milliseconds limit = std::chrono::seconds(60);
    std::function<void()> turn = [] {};
};

/// Runs the command that prints an OAuth 2 access token. No shell sees it: the line is a program
/// and its arguments, double quotes hold together what has blanks. The program gets nothing to
/// read; when it is given up, what it started is ended with it.
/// @return the first line of what it prints, without blanks around it.
/// @throws RuntimeError 32000 when the command is empty, cannot be started, takes too long, prints
/// too much, ends with another exit code than 0, or prints no token. The error has the exit code
/// and what the program wrote to its error output, but never the token.
QString run_token_command(const QString &command, const TokenPatience &patience = {});
