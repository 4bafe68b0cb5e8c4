#pragma once

class Prompts;
class QLineEdit;
class SettingsStore;
class TextBox;

/// The log that a person looks at: the file that the path box names, shown in the log box. The log
/// writer keeps to its own fixed files, wherever this path points.
class LogFile
{
public:
    LogFile(QLineEdit &Text17, TextBox &Text27, SettingsStore &settings, Prompts &prompts);

    /// "View Log": each line of the file, preceded by a line break. A file that cannot be read
    /// leaves the box empty.
    void Command38_Click();

    /// "Clear Log": empties the box and the file, after asking.
    /// @throws RuntimeError as write_text_file().
    void Command39_Click();

    /// "Set Log Path": stores another file's path.
    void Command40_Click();

private:
    QLineEdit &Text17;
    TextBox &Text27;
    SettingsStore &settings_;
    Prompts &prompts_;
};
