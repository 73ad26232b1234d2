// The settings of a group, typed and within their limits.
#pragma once

#include "host/editor/dialogs/DefaultButtonDialog.h"
#include "host/services/Settings.h"

#include <string>
#include <vector>

class QFormLayout;
class QLabel;
class QToolButton;

namespace velmor {

class SettingField;

class SettingsDialog final : public DefaultButtonDialog {
    Q_OBJECT
public:
    /// group is "TCE1" or "TCE2".
    SettingsDialog(const std::wstring &group, QWidget *parent);
    ~SettingsDialog() override;

protected:
    /// Sets what was changed and ends; stays open with one line when a value can't be kept.
    void OnOK() override;

private:
    void addField(const SettingSpec &spec, std::size_t row, SettingGroup shownIn, QFormLayout &form);
    void resetAll();

    std::vector<std::unique_ptr<SettingField>> m_fields;
    QLabel *m_problem;
};

} // namespace velmor
