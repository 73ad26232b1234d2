// The running program's configuration: paths, settings, texts, logging. The contracts' singletons answer from here.
#pragma once

#include "host/services/Messages.h"
#include "host/services/Paths.h"
#include "host/services/Settings.h"

#include <functional>
#include <string>

namespace velmor {

struct StartOptions {
    std::string language; ///< as given on the command line; empty: settings, then locale
};

class Services {
public:
    /// The one of the program, started from the environment at first use.
    static Services &instance();

    /// Reads settings and texts (anew).
    void start(const StartOptions &options, Paths paths);
    void start(const StartOptions &options = {}) { start(options, Paths::fromEnvironment()); }

    const Paths &paths() const { return m_paths; }
    const Settings &settings() const { return m_settings; }
    const Messages &messages() const { return m_messages; }
    /// Sets a key and lets it take effect at once, the language too.
    SaveResult set(std::string_view key, const SettingValue &value);
    /// Takes up a language ("hr", "en") at once, whatever the program was started with, and keeps it as a setting.
    SaveResult setLanguage(const std::string &language);
    /// Told after the texts of another language were taken up; one listener, and null for none.
    void setLanguageChanged(std::function<void()> changed) { m_languageChanged = std::move(changed); }
    /// Reads the texts anew when their files changed since; true when they did.
    bool reloadTexts();
    /// Takes a key back to what holds without it.
    SaveResult reset(std::string_view key);
    /// How a group's settings are shown to a person; without it (a program without windows) they are not.
    void setSettingsDialog(std::function<bool(const std::wstring &group)> show) { m_settingsDialog = std::move(show); }
    const std::function<bool(const std::wstring &)> &settingsDialog() const { return m_settingsDialog; }
    /// Everything that was wrong in settings and texts.
    std::vector<FileFinding> findings() const;

    /// The folder of symbols with label blocks; empty when there is none.
    std::filesystem::path symbolFolder() const;

    /// VELMOR_LOG (0 or 1), else the setting LOGGING.
    bool isLogging() const { return m_logging; }
    /// VELMOR_LOG_FILE, else the setting LOG_FILE, else velmor.log in the user's folder.
    const std::string &logFile() const { return m_logFile; }

    /// Where the user is told what an operation has to say outside of its result; a line of text each time.
    void setNotice(std::function<void(const std::wstring &)> notice) { m_notice = std::move(notice); }
    void notice(const std::wstring &text) const;

private:
    Services();
    void applySettings(bool readTexts);
    void loadTexts(const std::string &language);
    std::string textState(const std::string &language) const;
    StartOptions m_options;
    Paths m_paths;
    Settings m_settings;
    Messages m_messages;
    std::string m_textState; ///< of the files of texts, as they were read
    std::function<void(const std::wstring &)> m_notice;
    std::function<bool(const std::wstring &)> m_settingsDialog;
    std::function<void()> m_languageChanged;
    bool m_logging = false, m_started = false;
    std::string m_logFile;
};

} // namespace velmor
