// Choosing a hatch pattern by its picture.
#pragma once

#include "host/editor/dialogs/DefaultButtonDialog.h"

#include <QImage>

#include <string>

class QLabel;
class QLineEdit;
class QListWidget;

namespace velmor {

/// A picture of a pattern: some of its lines in ink on ground, enlarged so that they can be told apart. ratio: of the
/// screen's pixels to those of the size.
QImage patternPicture(const std::wstring &name, const QSize &size, const QColor &ink, const QColor &ground,
                      double ratio = 1.0);

class PatternDialog final : public DefaultButtonDialog {
    Q_OBJECT
public:
    PatternDialog(const std::wstring &current, bool showCustom, QWidget *parent);
    /// Empty when the list shows none.
    std::wstring chosen() const;

protected:
    void OnOK() override;

private:
    void fill(const std::wstring &current, bool showCustom);
    void filter(const QString &text);
    void showChoice();

    QLineEdit *m_filter;
    QListWidget *m_list;
    QLabel *m_description;
};

} // namespace velmor
