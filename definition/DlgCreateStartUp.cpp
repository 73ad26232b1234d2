// Start-up and closing of the definition dialog.
#include "definition/DlgCreateCatchmentArea.h"

#include "contracts/EditorAids.h"
#include "controls/Mnemonics.h"
#include "controls/WideText.h"
#include "definition/DefinitionMessages.h"
#include "definition/ReadableColour.h"
#include "ui_definition.h"

#include <QHeaderView>
#include <QScreen>

using namespace ControlId;
using ZEMGis::CModuleConfiguration;
using ZEMGis::Sewage::CCatchmentAreaManager;

namespace {

/// Captions that a message replaces at the start.
constexpr auto kTexts = std::to_array<CMessageRow>({
    {kGroupType, 1980},        {kCheckCatchment, 1936}, {kCheckHouse, 11254},
    {kCheckIndustrial, 11255}, {kGroupMethod, 1979},    {kCheckIslands, 1981},
    {kLabelSection, 2226},     {kBtnLayers, 1983},      {kGroupDefinition, 1985},
    {kBtnPoint, 312},          {kBtnEntity, 4558},      {kBtnCorners, 975},
    {kCheckLabel, 1982},       {kLabelDefined, 1986},   {kLabelCurrent, 1987},
    {kLabelName, 4600},        {kLabelArea, 1989},      {kRadioTerrain, 1990},
    {kLabelSlopeClass, 2449},  {kLabelIntensity, 4601}, {kLabelRunoff, 4602},
    {kLabelCoefficient, 1991}, {kLabelDensity, 1992},   {kLabelSlope, 1990},
    {kLabelNumber, 1988},      {kBtnSave, 1885},        {kBtnHide, 4582},
    {kBtnClose, 235},          {kBtnHelp, 50156},       {kBtnSelect, MessageId::kSelectSections},
});

constexpr auto kTips = std::to_array<CMessageRow>({
    {kCheckIslands, 2028},
    {kBtnPrevious, 1081},
    {kBtnNext, 1082},
    {kBtnLayers, 2031},
    {kBtnPoint, 2033},
    {kBtnEntity, 2034},
    {kBtnCorners, 2035},
    {kBtnAuto, 2036},
    {kCheckLabel, 2029},
    {kBtnLabelBlock, 2030},
    {kBtnTerrain, 2032},
    {kBtnSave, 2037},
    {kBtnZoom, MessageId::kZoomToSection},
    {kBtnSettings, MessageId::kSettings},
    {kRadioAtv, MessageId::kExampleTable},
    {kComboSlopeClass, MessageId::kExampleTable},
    {kEditIntensity, MessageId::kExampleTable},
    {kComboRunoff, MessageId::kExampleTable},
});

/// Names for those who hear the dialog, where no caption stands beside a control.
constexpr auto kAccessibleNames = std::to_array<CMessageRow>({
    {kBtnPrevious, 1081},
    {kBtnNext, 1082},
    {kBtnZoom, MessageId::kZoomToSection},
    {kEditZoom, MessageId::kZoomFactor},
    {kBtnSettings, MessageId::kSettings},
    {kEditLayers, 1983},
    {kListAreas, 1994},
    {kComboLabel, 1982},
    {kComboTerrain, 1990},
    {kBtnTerrain, 2032},
    {kBtnLabelBlock, 2030},
    {kEditNumber, 1988},
    {kEditSlope, 1990},
    {kComboType, 1980},
    {kComboMethod, 1979},
    {kSwatchDefined, 1986},
    {kSwatchCurrent, 1987},
    {kTextSection, MessageId::kCurrentSection},
});

/// Who gets a keyboard letter, in the order in which they choose: what is used most comes first.
constexpr auto kMnemonicOrder = std::to_array<int>({
    kBtnSave,         kBtnAuto,          kBtnSelect,       kBtnPoint,       kBtnEntity,       kBtnCorners,
    kGroupMethod,     kBtnLayers,        kCheckIslands,    kLabelName,      kLabelArea,       kRadioTerrain,
    kRadioAtv,        kLabelCoefficient, kLabelDensity,    kCheckCatchment, kCheckHouse,      kCheckIndustrial,
    kCheckLabel,      kBtnHide,          kBtnClose,        kCheckZoom,      kGroupDefinition, kLabelIntensity,
    kLabelSlopeClass, kLabelRunoff,      kBtnInfoSections, kBtnInfoAreas,
});

constexpr int kButtonImage = 18;
constexpr int kInfoImage = 16;

constexpr auto kImages = std::to_array<CImageRow>({
    {kBtnPrevious, L"SECTION_PREVIOUS", kButtonImage},
    {kBtnNext, L"SECTION_NEXT", kButtonImage},
    {kBtnZoom, L"ZOOM_SECTION", kButtonImage},
    {kBtnSettings, L"SETTINGS", kButtonImage},
    {kBtnLayers, L"LAYERS", kButtonImage},
    {kBtnPoint, L"BY_POINT", kButtonImage},
    {kBtnEntity, L"BY_ENTITY", kButtonImage},
    {kBtnCorners, L"BY_CORNERS", kButtonImage},
    {kBtnAuto, L"AUTOMATIC", kButtonImage},
    {kBtnTerrain, L"TERRAIN", kButtonImage},
    {kBtnLabelBlock, L"LABEL_BLOCK", kButtonImage},
    {kBtnSave, L"SAVE", kButtonImage},
    {kBtnInfoSections, L"INFO_SECTIONS", kInfoImage},
    {kBtnInfoAreas, L"INFO_AREAS", kInfoImage},
});

constexpr auto kNumericFields = std::to_array<CNumericField>({
    {kEditZoom, 4, 4, false},
    {kEditCoefficient, 4, 4, true},
    {kEditArea, 8, 4, true},
    {kEditDensity, 8, 4, true},
    {kEditSlope, 8, 4, true},
    {kEditIntensity, 4, 4, false},
    {kEditNumber, 8, 0, false},
});

} // namespace

CDlgCreateCatchmentArea::CDlgCreateCatchmentArea(QWidget *parent)
    : CAdUiBaseDialog(parent), m_ui(std::make_unique<Ui::DefinitionForm>())
{
    m_ui->setupUi(this);
    m_focusedDefault = std::make_unique<CFocusedDefault>(*this);
    ConnectControls();
}

CDlgCreateCatchmentArea::~CDlgCreateCatchmentArea()
{
    std::wstring title;
    const auto atEnd = [&](const std::function<void()> &step) { acedAtEnd(title.c_str(), step); };
    atEnd([&] { title = ToWide(windowTitle()); });
    atEnd([this] { DeleteRows(); });
    // Boundaries are left only when the end of the dialog failed. One that can't be erased keeps no other.
    for (const AcDbObjectIdArray *left : {&m_tempHatches, &m_tempBoundaries}) {
        for (const AcDbObjectId &id : *left)
            atEnd([&] { EraseEntity(id); });
    }
    atEnd([] { CCatchmentAreaManager::Instance()->UnMarkAllCatchments(ZEMGis::Sewage::kTypeAll); });
    atEnd([] { acedRedraw(nullptr, 4); });
    atEnd([this] { m_layerSelection.Free(); });
}

void CDlgCreateCatchmentArea::ConnectControls()
{
    const auto handle = [this](auto *control, auto signal, auto handler) {
        connect(control, signal, this, [this, handler] { RunHandler([this, handler] { (this->*handler)(); }); });
    };
    const auto click = [&](QAbstractButton *button, auto handler) {
        handle(button, &QAbstractButton::clicked, handler);
    };
    using Dialog = CDlgCreateCatchmentArea;
    click(m_ui->btnPrevious, &Dialog::OnBtnPrevious);
    click(m_ui->btnNext, &Dialog::OnBtnNext);
    click(m_ui->btnZoom, &Dialog::OnBtnZoom);
    click(m_ui->checkZoom, &Dialog::OnCheckZoom);
    click(m_ui->checkCatchment, &Dialog::OnCheckCatch);
    click(m_ui->checkHouse, &Dialog::OnCheckHouse);
    click(m_ui->checkIndustrial, &Dialog::OnCheckIndustrial);
    click(m_ui->checkLabel, &Dialog::RefreshMembers);
    click(m_ui->btnPoint, &Dialog::OnBtnPickPoint);
    click(m_ui->btnEntity, &Dialog::OnBtnPickEntity);
    click(m_ui->btnCorners, &Dialog::OnBtnDrawArea);
    click(m_ui->btnLayers, &Dialog::OnBtnLayers);
    click(m_ui->btnTerrain, &Dialog::OnBtnTerrain);
    click(m_ui->btnLabelBlock, &Dialog::OnBtnLabelBlock);
    click(m_ui->btnSettings, &Dialog::OnBtnSettings);
    click(m_ui->radioTerrain, &Dialog::OnCoeffSourceChanged);
    click(m_ui->radioAtv, &Dialog::OnCoeffSourceChanged);
    click(m_ui->btnAuto, &Dialog::OnBtnAuto);
    click(m_ui->btnSave, &Dialog::OnBtnSaveMain);
    click(m_ui->btnHide, &Dialog::OnBtnHide);
    click(m_ui->btnInfoSections, &Dialog::OnBtnInfoSections);
    click(m_ui->btnInfoAreas, &Dialog::OnBtnInfoAreas);
    handle(m_ui->comboMethod, &QComboBox::activated, &Dialog::OnMethodChanged);
    handle(m_ui->comboType, &QComboBox::activated, &Dialog::OnTypeChanged);
    handle(m_ui->comboTerrain, &QComboBox::activated, &Dialog::OnTerrainChanged);
    handle(m_ui->comboSlopeClass, &QComboBox::activated, &Dialog::ComputeAtvCoefficient);
    handle(m_ui->comboRunoff, &QComboBox::activated, &Dialog::ComputeAtvCoefficient);
    handle(m_ui->editIntensity, &QLineEdit::textChanged, &Dialog::ComputeAtvCoefficient);
    connect(m_ui->listAreas->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection &selected, const QItemSelection &deselected) {
                RunHandler([&] { OnSelectionChanged(selected, deselected); });
            });
}

bool CDlgCreateCatchmentArea::OnInitDialog()
{
    CAdUiBaseDialog::OnInitDialog();
    ShowMembers(); // the start values, which the next handler would read back otherwise
    m_bInitializing = true;
    SetTexts();
    SetToolTips();
    SetUpNumericEdits();
    FillCombos();
    LoadImages();
    SetUpSelectionButton();
    LoadTerrainTypes();
    CZEMCDictionaryPtr(AcDb::kForRead).dctRead(L"ZEMX_SEWAGE_CATCHMENT", L"LABEL_BLOCK", m_strBlockPath, false);
    ReadConfiguration();
    LoadExistingAreas();
    if (CModuleConfiguration::Instance()->GetGSValueInt(L"ZOOM_ONOFF", m_bZoom) == 0)
        m_bZoom = 0;
    ShowMembers();
    SetUpList();
    SetStatus(Msg(MessageId::kIdle), kColourGuidance);
    FillLabelCatalog(*m_ui->comboLabel);
    RestoreSettings();
    m_bInitializing = false;
    ComputeAtvCoefficient(); // whatever the source is: the table's coefficient stands at the start
    ShowLayerSummary();
    return true;
}

void CDlgCreateCatchmentArea::SetTexts()
{
    setWindowTitle(ToQString(Msg(MessageId::kDialogTitle)));
    SetCaptions(*this, kTexts, {});
    const std::wstring info = Msg(MessageId::kInfoWord) + L" - ";
    SetCaption(m_ui->btnInfoSections, info + Msg(MessageId::kSectionTitle));
    SetCaption(m_ui->btnInfoAreas, info + Msg(MessageId::kAreasTitle));
    MarkCaptions(*this, kMnemonicOrder);
    SetAccessibleNames(*this, kAccessibleNames);
}

void CDlgCreateCatchmentArea::SetToolTips()
{
    AddToolTips(m_toolTip, *this, kTips);
    for (const QPushButton *button : {m_ui->btnInfoSections, m_ui->btnInfoAreas})
        m_toolTip.AddWindowTool(GetDlgItem(button->property(kControlIdProperty).toInt()),
                                WithoutMnemonic(ToWide(button->text())));
}

void CDlgCreateCatchmentArea::SetUpNumericEdits()
{
    SetUpNumericFields(*this, kNumericFields);
    constexpr double kDefaultZoom = 1.5, kDefaultDensity = 1000.0, kDefaultSlope = 1.0, kDefaultIntensity = 100.0;
    double zoom = kDefaultZoom;
    CModuleConfiguration::Instance()->GetGSValueDouble(L"DEFAULT_ZOOM", zoom);
    SetNumber(m_ui->editZoom, zoom);
    SetNumber(m_ui->editDensity, kDefaultDensity);
    SetNumber(m_ui->editSlope, kDefaultSlope);
    SetNumber(m_ui->editIntensity, kDefaultIntensity);
}

void CDlgCreateCatchmentArea::FillCombos()
{
    using namespace ZEMGis::Sewage;
    m_ui->comboType->clear();
    m_ui->comboType->addItem(ToQString(Msg(MessageId::kTypeCatchment)), static_cast<int>(kTypeCatchment));
    m_ui->comboType->addItem(ToQString(Msg(MessageId::kTypeHouse)), static_cast<int>(kTypeHouse));
    m_ui->comboType->addItem(ToQString(Msg(MessageId::kTypeIndustrial)), static_cast<int>(kTypeIndustrial));
    m_ui->comboType->setCurrentIndex(0);
    m_ui->comboMethod->clear();
    for (int method = 0; method < kMethodCount; ++method)
        m_ui->comboMethod->addItem(ToQString(Msg(MessageId::kMethodFirst + static_cast<unsigned>(method))), method);
    m_ui->comboMethod->setCurrentIndex(m_ui->comboMethod->findData(static_cast<int>(kMethodAllSections)));
}

void CDlgCreateCatchmentArea::LoadImages()
{
    LoadButtonImages(*this, kImages);
}

void CDlgCreateCatchmentArea::SetUpSelectionButton()
{
    constexpr int kSelectionMask = 0x1EEA001;
    m_ui->btnSelect->setParentDialog(this, true);
    m_ui->btnSelect->SetButtonTopologyType(1);
    m_ui->btnSelect->SetHideDisabledMenuOptions(1);
    m_ui->btnSelect->SetSelectionType(kSelectionMask);
}

void CDlgCreateCatchmentArea::LoadExistingAreas()
{
    CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(m_allAreas, ZEMGis::Sewage::kTypeAll);
    m_centers.Clear();
    int number = 0;
    for (const AreaPtr &area : m_allAreas) {
        if (!area)
            continue;
        m_centers.Add(area->GetCenterPoint());
        number = SmallestFreeNumber(m_usedNumbers, number + 1);
        m_usedNumbers.insert(m_usedNumbers.end(), number);
        m_usedNames.insert(area->GetName());
    }
}

void CDlgCreateCatchmentArea::SetUpList()
{
    constexpr int kFirstColumn = 78, kSecondColumn = 76;
    QTreeWidget *list = m_ui->listAreas;
    list->setHeaderLabels({ToQString(Msg(MessageId::kListColumn)), ToQString(Msg(MessageId::kAreaWord))});
    // These widths, or more where a font or a language needs it.
    QHeaderView *header = list->header();
    const auto widthOf = [&](unsigned message) {
        constexpr int kCellMargins = 16;
        return list->fontMetrics().horizontalAdvance(ToQString(Msg(message))) + kCellMargins;
    };
    header->resizeSection(0, std::max({kFirstColumn, header->sectionSizeHint(0), widthOf(MessageId::kMainRow),
                                       widthOf(MessageId::kIslandRow)}));
    header->resizeSection(1, std::max(kSecondColumn, header->sectionSizeHint(1)));
}

void CDlgCreateCatchmentArea::ShowLayerSummary()
{
    std::wstring summary = Msg(MessageId::kLayerStatus), tip = summary;
    if (!m_boundaryLayers.empty()) {
        tip.clear();
        for (const std::wstring &layer : m_boundaryLayers)
            tip += (tip.empty() ? L"" : L"\n") + layer;
        summary = m_boundaryLayers.size() == 1 ? tip : L"***";
    }
    m_ui->editLayers->setText(ToQString(summary));
    m_ui->editLayers->setCursorPosition(0);
    m_toolTip.AddWindowTool(m_ui->editLayers, tip);
}

void CDlgCreateCatchmentArea::OnCancel()
{
    SaveSettings();
    EraseTempBoundaries();
    EndDialog(kCancel);
}

void CDlgCreateCatchmentArea::OnHandlerFailed()
{
    m_allAreas.clear();
    m_usedNames.clear();
    m_usedNumbers.clear();
    LoadExistingAreas();
    // What the handler had erased of the dialog's own came back.
    for (const AcDbObjectId &id : m_erased) {
        if (!id.isErased())
            m_tempBoundaries.push_back(id);
    }
    std::erase_if(m_erased, [](const AcDbObjectId &id) { return !id.isErased(); });
}

void CDlgCreateCatchmentArea::showEvent(QShowEvent *event)
{
    if (!m_bShownBefore) {
        m_bShownBefore = true;
        FitToScreen();
    }
    CAdUiBaseDialog::showEvent(event);
}

void CDlgCreateCatchmentArea::FitToScreen()
{
    // The form scrolls where the screen is too small for it; else it is shown whole.
    const QSize content = m_ui->content->sizeHint();
    m_ui->content->setMinimumSize(content);
    const QSize around = sizeHint() - m_ui->scrollArea->sizeHint();
    const QSize available = screen()->availableSize() * 0.95;
    resize((content + around).expandedTo(sizeHint()).boundedTo(available));
}
