// Prompts, host variables, files and messages to the user.
#include "contracts/CoreServices.h"
#include "host/drawing/BlockFile.h"
#include "host/drawing/Entities.h"
#include "host/drawing/Journal.h"
#include "host/editor/EntityPick.h"
#include "host/editor/FilePreview.h"
#include "host/editor/LeakMarks.h"
#include "host/editor/Session.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/services/Messages.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <QApplication>
#include <QFileDialog>

#include <algorithm>
#include <cwchar>
#include <filesystem>

using velmor::Answer;
using velmor::journal;
using velmor::Prompt;
using velmor::PromptKind;
using velmor::Session;

namespace {

AcGePoint3d toPoint(const ads_point p)
{
    return {p[0], p[1], p[2]};
}

void fromPoint(const AcGePoint3d &p, ads_point result)
{
    result[0] = p.x;
    result[1] = p.y;
    result[2] = p.z;
}

std::wstring textOrEmpty(const wchar_t *text)
{
    return text ? text : L"";
}

wchar_t *newText(const std::wstring &text)
{
    auto *copy = new wchar_t[text.size() + 1];
    std::wmemcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

std::optional<velmor::VariableValue> valueOf(const resbuf &value)
{
    switch (value.restype) {
    case RTSHORT:
        return static_cast<int>(value.resval.rint);
    case RTLONG:
        return static_cast<int>(value.resval.rlong);
    case RTREAL:
        return value.resval.rreal;
    case RTSTR:
        return value.resval.rstring ? std::optional<velmor::VariableValue>(std::wstring(value.resval.rstring))
                                    : std::nullopt;
    default:
        return std::nullopt;
    }
}

std::string valueText(const velmor::VariableValue &value)
{
    return std::visit([](const auto &held) { return velmor::journalText(held); }, value);
}

} // namespace

int acedGetPoint(const ads_point base, const wchar_t *prompt, ads_point result)
{
    Session *session = Session::currentOrNull();
    if (!session || !result)
        return RTERROR;
    journal("acedGetPoint", prompt);
    Prompt asked{.kind = PromptKind::Point, .text = textOrEmpty(prompt)};
    if (base)
        asked.base = toPoint(base);
    for (;;) {
        const Answer answer = session->ask(asked);
        if (answer.isEscape())
            return RTCAN;
        if (answer.isEnter())
            return RTNONE_INPUT;
        if (const auto point = answer.point(asked.base)) {
            velmor::clearLeakMarks(*session);
            fromPoint(*point, result);
            return RTNORM;
        }
        session->status(velmor::uiText("ui.input.point"));
    }
}

int acedEntSel(const wchar_t *prompt, ads_name entity, ads_point pickPoint)
{
    Session *session = Session::currentOrNull();
    if (!session || !session->drawing() || !entity || !pickPoint)
        return RTERROR;
    journal("acedEntSel", prompt);
    const Answer answer = session->ask({.kind = PromptKind::Entity, .text = textOrEmpty(prompt)});
    if (answer.isEscape())
        return RTCAN;
    const auto pick = velmor::pickedEntity(*session, answer);
    if (!pick || acdbGetAdsName(*reinterpret_cast<ads_name *>(entity), pick->id) != Acad::eOk)
        return RTERROR;
    velmor::clearLeakMarks(*session);
    fromPoint(pick->point, pickPoint);
    return RTNORM;
}

int acedGetString(int cronly, const wchar_t *prompt, std::wstring &result)
{
    Session *session = Session::currentOrNull();
    if (!session)
        return RTERROR;
    journal("acedGetString", cronly, prompt);
    const Answer answer = session->ask({.kind = PromptKind::Text, .text = textOrEmpty(prompt)});
    if (answer.isEscape())
        return RTCAN;
    std::wstring text = answer.text() ? *answer.text() : std::wstring();
    if (cronly == 0)
        text.resize(std::min(text.find(L' '), text.size())); // a blank ends the input
    result = std::move(text);
    return RTNORM;
}

int acedGetVar(const wchar_t *name, resbuf *result)
{
    Session *session = Session::currentOrNull();
    const auto value = session && name && result ? session->variable(name) : std::nullopt;
    if (!value)
        return RTERROR;
    if (const auto *whole = std::get_if<int>(&*value)) {
        result->restype = RTSHORT;
        result->resval.rint = static_cast<short>(*whole);
    } else if (const auto *number = std::get_if<double>(&*value)) {
        result->restype = RTREAL;
        result->resval.rreal = *number;
    } else {
        result->restype = RTSTR;
        result->resval.rstring = newText(std::get<std::wstring>(*value));
    }
    return RTNORM;
}

int acedSetVar(const wchar_t *name, const resbuf *value)
{
    Session *session = Session::currentOrNull();
    const auto given = session && name && value ? valueOf(*value) : std::nullopt;
    if (!given)
        return RTERROR;
    journal("acedSetVar", name, valueText(*given));
    return session->setVariable(name, *given) ? RTNORM : RTERROR;
}

int acedFindFile(const wchar_t *name, std::wstring &path)
{
    if (!name || !*name)
        return RTERROR;
    journal("acedFindFile", name);
    namespace fs = std::filesystem;
    const fs::path wanted = velmor::utf8(name);
    std::vector<fs::path> candidates{wanted};
    if (wanted.is_relative()) {
        if (const Session *session = Session::currentOrNull(); session && !session->path().empty())
            candidates.push_back(session->path().parent_path() / wanted);
        candidates.push_back(velmor::Services::instance().paths().supportFile(wanted));
    }
    for (const fs::path &candidate : candidates) {
        std::error_code error;
        if (fs::is_regular_file(candidate, error)) {
            path = velmor::wide(fs::absolute(candidate, error).string());
            return RTNORM;
        }
    }
    return RTERROR;
}

int acedGetFileD(const wchar_t *title, const wchar_t *defaultPath, const wchar_t *extension, int flags, resbuf *result)
{
    constexpr int kNewFile = 1; // the user names one that need not exist
    Session *session = Session::currentOrNull();
    if (!session || !result)
        return RTERROR;
    journal("acedGetFileD", title, defaultPath, extension, flags);
    std::wstring chosen;
    if (session->view()) {
        // Several kinds stand behind semicolons.
        QStringList patterns;
        for (const QString &kind : QString::fromStdWString(textOrEmpty(extension)).split(QLatin1Char(';'))) {
            if (!kind.trimmed().isEmpty())
                patterns << QStringLiteral("*.") + kind.trimmed();
            if (kind.trimmed() == QLatin1String("dwg")) // what stands for one here, see BlockFile.h
                patterns << QStringLiteral("*.dxf");
        }
        patterns.removeDuplicates();
        const QString filter = patterns.isEmpty() ? QStringLiteral("*") : patterns.join(QLatin1Char(' '));
        const QString caption = QString::fromStdWString(textOrEmpty(title));
        QString start = QString::fromStdWString(textOrEmpty(defaultPath));
        if (const auto standIn = velmor::standInOf(velmor::utf8(textOrEmpty(defaultPath))))
            start = QString::fromStdString(standIn->string());
        QWidget *owner = velmor::dialogOwner();
        chosen = ((flags & kNewFile) != 0 ? QFileDialog::getSaveFileName(owner, caption, start, filter)
                                          : QFileDialog::getOpenFileName(owner, caption, start, filter))
                     .toStdWString();
    } else {
        const Answer answer = session->ask({.kind = PromptKind::Text, .text = textOrEmpty(title)});
        if (const std::wstring *text = answer.text())
            chosen = *text;
    }
    if (chosen.empty())
        return RTCAN;
    result->restype = RTSTR;
    result->resval.rstring = newText(chosen);
    return RTNORM;
}

void acedAlert(const wchar_t *text)
{
    journal("acedAlert", text);
    if (Session *session = Session::currentOrNull())
        session->alert(textOrEmpty(text));
}

bool acedHatchPalletteDialog(const wchar_t *current, bool showCustom, std::wstring &result)
{
    journal("acedHatchPalletteDialog", current, showCustom);
    return velmor::runPatternDialog(textOrEmpty(current), showCustom, result);
}

bool acedSetColorDialog(int &colorIndex, bool allowMetaColor, int layerColor)
{
    journal("acedSetColorDialog", colorIndex, allowMetaColor, layerColor);
    return velmor::runColorDialog(colorIndex, allowMetaColor, layerColor);
}

bool acdbDisplayPreviewFromDwg(const wchar_t *path, void *widget, std::uint32_t ground)
{
    journal("acdbDisplayPreviewFromDwg", path, ground);
    if (!path || !*path || !widget)
        return false;
    // A widget of this program, else the handle of a native one.
    const QWidgetList widgets = QApplication::allWidgets();
    const auto found = std::ranges::find(widgets, static_cast<QWidget *>(widget));
    QWidget *field = found != widgets.end() ? *found : QWidget::find(reinterpret_cast<WId>(widget));
    if (!field)
        return false;
    const QColor colour = ground == 0 ? velmor::drawingGround(*field)
                                      : QColor(static_cast<int>(ground & 0xff), static_cast<int>(ground >> 8 & 0xff),
                                               static_cast<int>(ground >> 16 & 0xff));
    return velmor::showFilePicture(*field, velmor::utf8(path), colour);
}
