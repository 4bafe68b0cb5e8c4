#pragma once

/// The numbers by which commands call the main window's tabs: identities, not positions.
namespace tab_number
{
inline constexpr int first = 0;
inline constexpr int new_email = 11;
} // namespace tab_number
