#pragma once

/// Whether the byte is a blank inside a line of a message (RFC 5234: WSP).
constexpr bool is_blank(char c)
{
    return c == ' ' || c == '\t';
}
