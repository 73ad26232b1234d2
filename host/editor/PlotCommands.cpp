// EXPORTPDF and PLOT.
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/Plot.h"
#include "host/editor/Saving.h"
#include "host/editor/UiMessage.h"
#include "host/editor/ViewControl.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <QDate>
#include <QGuiApplication>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>

namespace velmor {

namespace {

using Next = Command::Next;

struct Paper {
    const wchar_t *word;
    QPageSize::PageSizeId size;
};
constexpr Paper kPapers[] = {{L"A4", QPageSize::A4},
                             {L"A3", QPageSize::A3},
                             {L"A2", QPageSize::A2},
                             {L"A1", QPageSize::A1},
                             {L"A0", QPageSize::A0}};

void askArea(Asker &asker, PlotSettings &settings)
{
    const Reply area = asker.word({.message = "ui.prompt.plot.area",
                                   .words = {L"Extents", L"Window"},
                                   .standard = uiText("ui.word.Extents"),
                                   .optional = true});
    if (!area.is(L"Window"))
        return;
    for (;;) {
        const AcGePoint3d first = asker.corner("ui.prompt.corner.first");
        const AcGePoint3d second = asker.corner("ui.prompt.corner", first);
        if (first.x != second.x && first.y != second.y) {
            settings.window.emplace();
            settings.window->add(first.x, first.y);
            settings.window->add(second.x, second.y);
            return;
        }
        asker.refuse(uiText("ui.plot.window"));
    }
}

void askPaper(Asker &asker, PlotSettings &settings)
{
    Ask ask{.message = "ui.prompt.plot.paper", .words = {}, .standard = L"A4", .optional = true};
    for (const Paper &paper : kPapers)
        ask.words.emplace_back(paper.word);
    if (const Reply paper = asker.word(ask); !paper.isEnter())
        settings.paper = std::ranges::find(kPapers, paper.word, &Paper::word)->size;
    const Reply turned = asker.word({.message = "ui.prompt.plot.turned",
                                     .words = {L"Landscape", L"Portrait"},
                                     .standard = uiText("ui.word.Landscape"),
                                     .optional = true});
    settings.orientation = turned.is(L"Portrait") ? QPageLayout::Portrait : QPageLayout::Landscape;
}

/// "1:500" or 500; Fit, which Enter means too, the largest usual scale.
void askScale(Asker &asker, PlotSettings &settings)
{
    for (;;) {
        const Reply scale = asker.number({.message = "ui.prompt.plot.scale",
                                          .words = {L"Fit"},
                                          .standard = uiText("ui.word.Fit"),
                                          .optional = true});
        if (scale.isEnter() || scale.is(L"Fit"))
            return;
        constexpr double kLargest = 1e9;
        const double denominator = scale.number < 1.0 && scale.number > 0.0 ? 1.0 / scale.number : scale.number;
        if (denominator >= 1.0 && denominator <= kLargest) {
            settings.denominator = denominator;
            return;
        }
        asker.refuse(uiText("ui.plot.badScale"));
    }
}

/// All but where it goes to. Nothing, after an alert, when there is nothing to show.
std::optional<PlotPlan> askPlot(Asker &asker, PlotSettings &settings)
{
    askArea(asker, settings);
    askPaper(asker, settings);
    askScale(asker, settings);
    settings.file = plotFileName(asker.session());
    settings.date = QDate::currentDate().toString(Qt::ISODate);
    const auto plan = planPlot(asker.drawing(), settings);
    if (!plan)
        asker.session().alert(uiText("ui.plot.empty"));
    return plan;
}

void tell(Session &session, const PlotPlan &plan, const std::wstring &where)
{
    if (!plan.fits)
        session.status(uiText("ui.plot.cut"));
    session.status(uiMessage("ui.plot.done", {where, scaleText(plan.denominator).toStdWString()}));
}

Next exportPdf(Asker &asker)
{
    const Reply file = asker.text({.message = "ui.prompt.plot.file", .completion = Completion::Pdfs});
    // Who chose the file by a dialog was asked there.
    if (!asker.takeWord(L"REPLACE") && !mayReplaceFile(asker.session(), utf8(file.text))) {
        asker.session().status(uiText("ui.save.kept"));
        throw Cancelled();
    }
    PlotSettings settings;
    const auto plan = askPlot(asker, settings);
    if (!plan)
        return Next::BadInput;
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        asker.session().alert(uiText("ui.plot.noFonts"));
        return Next::Revert;
    }
    const SaveResult saved = savePdf(asker.drawing(), utf8(file.text), settings, *plan);
    if (!saved) {
        asker.session().alert(wide(saved.message));
        return Next::Revert;
    }
    tell(asker.session(), *plan, file.text);
    return Next::Commit;
}

Next plot(Asker &asker)
{
    if (ViewControl *view = viewControl(asker.session()); view && !asker.hasAnswers()) {
        view->openPlotDialog();
        return Next::Commit;
    }
    PlotSettings settings;
    const auto plan = askPlot(asker, settings);
    if (!plan)
        return Next::BadInput;
    const Reply name = asker.text({.message = "ui.prompt.plot.printer", .enter = true, .optional = true});
    const QString printer = name.isEnter() ? QPrinterInfo::defaultPrinterName() : QString::fromStdWString(name.text);
    if (const auto failure = printPlot(asker.drawing(), settings, *plan, printer)) {
        asker.session().alert(*failure);
        return Next::Revert;
    }
    tell(asker.session(), *plan, printer.toStdWString());
    return Next::Commit;
}

} // namespace

QString plotFileName(const Session &session)
{
    return session.path().empty() ? QString::fromStdWString(uiText("ui.title.untitled"))
                                  : QString::fromStdString(session.path().filename().string());
}

std::optional<std::wstring> printPlot(Drawing &drawing, const PlotSettings &settings, const PlotPlan &plan,
                                      const QString &name)
{
    const QPrinterInfo info = QPrinterInfo::printerInfo(name);
    if (info.isNull())
        return uiMessage("ui.plot.noPrinter", {name.toStdWString()});
    QPrinter printer(info, QPrinter::HighResolution);
    printer.setPageSize(QPageSize(settings.paper));
    printer.setPageOrientation(settings.orientation);
    printer.setFullPage(true); // the page's own corner is where lengths are measured from
    QPainter painter;
    if (!painter.begin(&printer))
        return uiMessage("ui.plot.printFailed", {name.toStdWString()});
    constexpr double kMillimetresPerInch = 25.4;
    paintPlot(painter, drawing, settings, plan, printer.resolution() / kMillimetresPerInch);
    if (!painter.end())
        return uiMessage("ui.plot.printFailed", {name.toStdWString()});
    return std::nullopt;
}

void addPlotCommands(CommandStack &stack)
{
    stack.addWork(L"EXPORTPDF", 0, exportPdf);
    stack.addWork(L"PLOT", 0, plot);
}

} // namespace velmor
