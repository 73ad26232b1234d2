// The extended list with a column of each kind.
#include "tests/gallery/Options.h"
#include "tests/gallery/Rows.h"

#include "controls/WideText.h"
#include "controls/XHeaderCtrl.h"
#include "controls/XListCtrl.h"
#include "tests/controls/ListHost.h"

#include <QInputDialog>

#include <memory>
#include <new>

namespace gallery {

namespace {

enum Column { kName, kOn, kOneOf, kTerrain, kShare, kColor, kHatch, kLayer };

QString translated(const char *text)
{
    return Options::tr(text);
}

const std::vector<std::wstring> &terrains()
{
    static const std::vector<std::wstring> names = {L"Pitched roof", L"Asphalt",         L"Concrete", L"Brick paving",
                                                    L"Gravel",       L"Parks and lawns", L"Meadow"};
    return names;
}

void addRow(CXListCtrl &list, const std::wstring &name)
{
    const int row = list.InsertItem(list.GetItemCount(), name);
    if (row < 0)
        return;
    list.SetCheckbox(row, kOn, row % 2, false);
    list.SetCheckbox(row, kOneOf, row == 1, true);
    list.SetComboBox(row, kTerrain, true, &terrains(), 5, row % 7);
    list.SetItemText(row, kShare, std::to_wstring(10 + row % 90) + L".500");
    list.SetCellNumeric(row, kShare);
    list.SetItemText(row, kColor, row == 2 ? L"-1" : std::to_wstring(row % 7 + 1));
    list.SetItemText(row, kHatch, L"SOLID");
    list.SetItemText(row, kLayer, L"0");
}

void fill(CXListCtrl &list, int rows)
{
    list.DeleteAllItems();
    for (int row = 0; row < rows; ++row)
        addRow(list, L"Section S-" + std::to_wstring(101 + row));
}

void answerByQuestions(QWidget *parent)
{
    listHost().color = [parent](int &color) {
        bool taken = false;
        color = QInputDialog::getInt(parent, translated("Colour"), translated("Index"), color, 0, 256, 1, &taken);
        return taken;
    };
    listHost().pattern = [parent](std::wstring &pattern) {
        bool taken = false;
        const QStringList names = {QStringLiteral("SOLID"), QStringLiteral("ANSI31"), QStringLiteral("EARTH")};
        pattern =
            ToWide(QInputDialog::getItem(parent, translated("Hatch"), translated("Pattern"), names, 0, false, &taken));
        return taken;
    };
}

Row listRow(const Setting &setting)
{
    auto *list = new CXListCtrl;
    list->setAccessibleName(translated("Extended list"));
    list->InsertColumn(kName, L"Name", 110);
    list->InsertColumn(kOn, L"On");
    list->InsertColumn(kOneOf, L"One of");
    list->InsertColumn(kTerrain, L"Terrain", 120);
    list->InsertColumn(kShare, L"Share [%]", CXListCtrl::kSizedToHeader, kFormatRight);
    list->InsertColumn(kColor, L"Colour", 90);
    list->InsertColumn(kHatch, L"Hatch", 80, kFormatCenter);
    list->InsertColumn(kLayer, L"Layer", 80);
    list->AddEditColumn(kName);
    list->AddEditColumn(kShare);
    list->AddColorColumn(kColor);
    list->AddHatchColumn(kHatch);
    list->AddLayerColumn(kLayer);
    list->SetColorLabel(L"ByLayer");
    list->SetHeaderCheckedState(kOn, 0);
    list->SetColumnWidth(kOn, CXListCtrl::kSizedToHeader);
    list->setFixedHeight(240);
    fill(*list, 6);
    list->SetItemText(3, kShare, nullptr, 0x0000C0, 0xC0FFFF);
    list->SetBold(4, kTerrain, true);
    list->SetEnabled(5, false);
    list->SetCurSel(1);
    answerByQuestions(list);
    QObject::connect(list, &CXListCtrl::CellChanged, list, [note = setting.note](int row, int column) {
        note(translated("Extended list: row %1, column %2 changed").arg(row).arg(column));
    });

    auto *options = new Options;
    options->Check(translated("Grid lines"), false, [=](bool on) { list->SetExtendedStyle(on ? 33 : 32); });
    options->Check(translated("Header check box"), true,
                   [=](bool on) { list->SetHeaderCheckedState(kOn, on ? 0 : -1); });
    options->Check(translated("Last row disabled"), true,
                   [=](bool on) { list->SetEnabled(list->GetItemCount() - 1, !on); });
    options->Number(translated("Largest share"), 1000, 1, 100000,
                    [=](int max) { list->SetNumericLimits(0.001, max, 6, 3); });
    options->Number(translated("Size in points"), list->font().pointSize(), 6, 24, [=](int size) {
        QFont font = list->font();
        font.setPointSize(size);
        list->setFont(font);
        list->GetHeader().setFont(font);
    });
    options->Button(translated("Six rows"), [=] { fill(*list, 6); });
    options->Button(translated("20,000 rows"), [=] { fill(*list, 20000); });
    options->Button(translated("A row without records"), [=] {
        list->SetRecordMaker([](std::size_t) -> std::vector<CellRecord> { throw std::bad_alloc(); });
        list->InsertItem(list->GetItemCount(), L"No records");
        list->SetRecordMaker([](std::size_t count) { return std::vector<CellRecord>(count); });
    });
    Row row;
    row.name = translated("Extended list");
    row.control = list;
    row.options = options;
    row.text = [list] { return ToQString(list->GetItemText(list->GetCurSel(), kTerrain)); };
    row.wide = true;
    return row;
}

} // namespace

Group ListRows(const Setting &setting)
{
    return {translated("Lists with cells"), {listRow(setting)}};
}

} // namespace gallery
