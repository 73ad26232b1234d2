// A drawing in its window, for pictures.
#pragma once

#include "host/editor/Captions.h"
#include "host/editor/MainWindow.h"
#include "host/editor/Session.h"
#include "host/editor/Theme.h"
#include "host/services/Services.h"

#include <filesystem>

namespace velmor {

/// A session and its shown window in a language and a theme, over a file that is open when isOpen says so.
class ShownDrawing {
public:
    explicit ShownDrawing(const std::filesystem::path &drawing, const char *language = "en", Theme theme = Theme::Light)
        : m_start(language, theme), window(session)
    {
        session.setDrawing(Drawing::createNew());
        window.resize(1280, 800);
        window.show();
        isOpen = window.openFile(drawing);
    }

private:
    /// What comes before the session.
    struct Start {
        Start(const char *language, Theme theme)
        {
            Services::instance().start({.language = language});
            followLanguage();
            applyTheme(theme);
        }
    } m_start;

public:
    Session session;
    MainWindow window;
    bool isOpen = false;
};

} // namespace velmor
