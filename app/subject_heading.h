#pragma once

#include <QLatin1String>

class Prompts;
class QLineEdit;
class SettingsStore;

/// The key and the words of a subject heading's confirmations.
struct HeadingTexts
{
    QLatin1String key;
    QLatin1String apply_question;
    QLatin1String applied;
    QLatin1String delete_question;
};

/// The headings that a person can set: of unwanted mail, and up to three of returned mail. The
/// delete questions differ in their blanks, and stay as people know them.
namespace heading_texts
{
using L1 = QLatin1String;
inline constexpr L1 returned_question{
    "Do you want to add a new or change your Returned eMail Subject Heading?"};
inline constexpr L1 returned_applied{"Your Filter setting has been changed!"};

inline constexpr HeadingTexts unwanted{
    L1{"Delete"}, L1{"Do you want to add a new or change your Delete Subject Heading?"},
    L1{"Your Delete setting has been changed!"},
    L1{"Are you sure you want to delete your ' Delete Subject Heading ' configuration?"}};
inline constexpr HeadingTexts returned{
    L1{"Filter"}, returned_question, returned_applied,
    L1{"Are you sure you want to delete this  'ISP Returned eMail Subject Heading 'setting?"}};
inline constexpr HeadingTexts returned1{
    L1{"Filter1"}, returned_question, returned_applied,
    L1{"Are you sure you want to delete this  'ISP Returned eMail Subject Heading ' setting?"}};
inline constexpr HeadingTexts returned2{
    L1{"Filter2"}, returned_question, returned_applied,
    L1{"Are you sure you want to delete this  'ISP Returned eMail Subject Heading 'setting?"}};
} // namespace heading_texts

/// One subject heading's box and what its buttons "Get", "Apply" and "Del" do.
class SubjectHeading
{
public:
    SubjectHeading(const HeadingTexts &texts, QLineEdit &box, SettingsStore &settings,
                   Prompts &prompts);

    /// Shows the stored heading; an empty box when there is none.
    void get() const;

    /// Stores the box's text, after asking; a heading that is stored already is asked about once
    /// more, also when the two are equal.
    void apply();

    /// Forgets the stored heading, after asking; the box keeps its text.
    void del();

private:
    HeadingTexts texts_;
    QLineEdit &box_;
    SettingsStore &settings_;
    Prompts &prompts_;
};
