// The window of the gallery: every control in a row with what it holds, and the options of the one in use.
#pragma once

#include "controls/LocaleSettings.h"
#include "tests/gallery/Rows.h"

#include <QMainWindow>

class QComboBox;
class QGridLayout;
class QLabel;
class QListWidget;
class QStackedWidget;

namespace gallery {

class GalleryWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit GalleryWindow(QWidget *parent = nullptr);

    /// 0: as the desktop, 1: light, 2: dark.
    void SetTheme(int theme);
    /// Scrolls to a control and shows its options; false when there is none of that name.
    bool ShowControl(const QString &name);

private:
    struct Shown {
        Row row;
        QLabel *name = nullptr;
        QLabel *text = nullptr;
        QLabel *value = nullptr;
        QLabel *valid = nullptr;
    };

    QWidget *MakeBar();
    QWidget *MakeOptionsPane();
    /// All controls anew, with the settings of the region chosen.
    void Rebuild();
    void AddGroup(QGridLayout &grid, const Group &group);
    void AddShown(const Shown &shown);
    void Refresh();
    void ShowOptionsOf(int row);
    void OnFocusChanged(QWidget *old, QWidget *now);
    void Note(const QString &what);

    AMSEdit::CLocaleSettings m_settings;
    std::vector<Shown> m_shown;
    QComboBox *m_region;
    QComboBox *m_theme;
    QWidget *m_page = nullptr;
    class QScrollArea *m_scroll;
    QComboBox *m_optionsOf;
    QStackedWidget *m_options;
    QListWidget *m_notes;
    bool m_bReadOnly = false;
    bool m_bDisabled = false;
};

} // namespace gallery
