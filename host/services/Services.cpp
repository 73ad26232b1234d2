#include "host/services/Services.h"

#include "host/drawing/PatternLibrary.h"
#include "host/services/Text.h"

#include <cstdlib>
#include <utility>

namespace velmor {

namespace fs = std::filesystem;

namespace {

/// Folders between semicolons.
std::vector<fs::path> folderList(const std::string &text)
{
    std::vector<fs::path> folders;
    std::string_view rest = text;
    while (!rest.empty()) {
        const auto end = rest.find(';');
        if (const auto folder = trimmed(rest.substr(0, end)); !folder.empty())
            folders.emplace_back(folder);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return folders;
}

} // namespace

Services::Services() : m_paths({}, {}) {}

Services &Services::instance()
{
    static Services services;
    // What is wrong in its own files is worded by the texts that it reads, so it is asked while it starts.
    if (!std::exchange(services.m_started, true))
        services.start();
    return services;
}

void Services::start(const StartOptions &options, Paths paths)
{
    m_started = true;
    m_options = options;
    m_paths = std::move(paths);
    m_settings.load(m_paths.settingsFile());
    applySettings(true);
    if (!m_settings.findings().empty()) // worded before the language was known
        m_settings.load(m_paths.settingsFile());
    PatternLibrary::instance().setSource([](const fs::path &name) { return instance().paths().supportFile(name); });
}

void Services::applySettings(bool readTexts)
{
    const auto text = [&](std::string_view key) {
        return utf8(std::get<std::wstring>(m_settings.valueOrStandard(key)));
    };
    m_paths.setSupportFolders(folderList(text("SUPPORT_PATH")));
    const std::string language = chooseLanguage(m_options.language, text("LANGUAGE"));
    if (readTexts || m_messages.language() != language) {
        loadTexts(language);
        if (m_languageChanged)
            m_languageChanged();
    }

    const char *log = std::getenv("VELMOR_LOG");
    m_logging = log && *log ? std::string_view(log) != "0" : std::get<int>(m_settings.valueOrStandard("LOGGING")) != 0;
    const char *file = std::getenv("VELMOR_LOG_FILE");
    m_logFile = file && *file ? std::string(file) : text("LOG_FILE");
    if (m_logFile.empty())
        m_logFile = m_paths.userFolder() / "velmor.log";
    if (m_logging && fs::path(m_logFile).has_parent_path()) {
        std::error_code error; // a log that can't be opened is the log writer's to bear
        fs::create_directories(fs::path(m_logFile).parent_path(), error);
    }
}

void Services::loadTexts(const std::string &language)
{
    m_textState = textState(language);
    m_messages.load(m_paths, language);
}

std::string Services::textState(const std::string &language) const
{
    std::string state;
    const std::string name = "messages/" + language + ".txt";
    for (const fs::path &file : {m_paths.resource(name), m_paths.userFolder() / name}) {
        std::error_code error;
        const auto time = fs::last_write_time(file, error);
        if (!error)
            state += file.string() + ' ' + std::to_string(time.time_since_epoch().count()) + ' ' +
                     std::to_string(fs::file_size(file, error)) + '\n';
    }
    return state;
}

bool Services::reloadTexts()
{
    const std::string language = m_messages.language();
    if (textState(language) == m_textState)
        return false;
    loadTexts(language);
    return true;
}

SaveResult Services::set(std::string_view key, const SettingValue &value)
{
    SaveResult result = m_settings.set(key, value);
    applySettings(false);
    return result;
}

SaveResult Services::setLanguage(const std::string &language)
{
    m_options.language = language;
    return set("LANGUAGE", wide(language));
}

SaveResult Services::reset(std::string_view key)
{
    SaveResult result = m_settings.reset(key);
    applySettings(false);
    return result;
}

std::vector<FileFinding> Services::findings() const
{
    std::vector<FileFinding> all = m_settings.findings();
    all.insert(all.end(), m_messages.findings().begin(), m_messages.findings().end());
    return all;
}

fs::path Services::symbolFolder() const
{
    const auto set = std::get<std::wstring>(m_settings.valueOrStandard("SYMBOL_PATH"));
    const fs::path folder = set.empty() ? m_paths.resource("symbols") : fs::path(utf8(set));
    std::error_code error;
    return fs::is_directory(folder, error) ? folder : fs::path();
}

void Services::notice(const std::wstring &text) const
{
    if (m_notice)
        m_notice(text);
}

} // namespace velmor
