#pragma once

class DataConnection;
class Prompts;
struct SharedControls;

/// The developer's two try-out buttons beside the address parser; no workflow uses them.
class ParserTryOut
{
public:
    ParserTryOut(DataConnection &Data2, const SharedControls &controls, Prompts &prompts);

    /// "test grab particular email addresss from text message": puts the words of RichTextBox2 one
    /// a line and shows, of its first address, the first 99 characters before the "@" in Text31,
    /// the user's part in Text33 and the last 99 characters behind it in Text34. Changes no table.
    void Command31_Click() const;

    /// "parse function": for each word of Text35, up to the first empty one, shows it and deletes
    /// the `email2` rows whose address contains it. An error ends it quietly.
    void Command32_Click() const;

private:
    void delete_words() const;

    DataConnection &Data2;
    const SharedControls &controls_;
    Prompts &prompts_;
};
