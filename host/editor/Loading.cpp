#include "host/editor/Loading.h"

#include "host/editor/Captions.h"
#include "host/editor/Session.h"

#include <QEventLoop>
#include <QProgressDialog>
#include <QTimer>

#include <atomic>
#include <future>

namespace velmor {

namespace {

/// A load that is done by then shows nothing.
constexpr std::chrono::milliseconds kMoment{250};
constexpr std::chrono::milliseconds kBetweenLooks{40};
constexpr int kSteps = 1000;

} // namespace

LoadResult loadBeside(QWidget &window, const std::filesystem::path &file,
                      const std::function<LoadResult(const LoadOptions &)> &work)
{
    std::atomic<double> done = 0.0;
    std::atomic<bool> cancelled = false;
    const LoadOptions options{[&](double part) {
        done = part;
        return !cancelled;
    }};
    auto loading = std::async(std::launch::async, [&] { return work(options); });
    if (loading.wait_for(kMoment) == std::future_status::ready)
        return loading.get();

    QProgressDialog dialog(uiString("ui.loading.text").arg(QString::fromStdString(file.filename().string())),
                           uiString("ui.loading.cancel"), 0, kSteps, &window);
    dialog.setWindowTitle(uiString("ui.loading.title"));
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.setAutoClose(false);
    dialog.setAutoReset(false);
    dialog.setMinimumDuration(0);
    dialog.setAccessibleName(uiString("ui.loading.title"));
    QObject::connect(&dialog, &QProgressDialog::canceled, &dialog, [&] {
        cancelled = true;
        dialog.setLabelText(uiString("ui.loading.cancelling"));
        dialog.show(); // until it has really ended
    });
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &dialog, [&] {
        dialog.setValue(static_cast<int>(done * kSteps));
        if (loading.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
            loop.quit();
    });
    look.start(kBetweenLooks);
    dialog.show();
    loop.exec();
    return loading.get();
}

LoadResult loadShown(Session &session, const std::filesystem::path &file)
{
    const auto load = [&file](const LoadOptions &options) { return Drawing::load(file, options); };
    auto *window = dynamic_cast<QWidget *>(session.view());
    return window && window->isVisible() ? loadBeside(*window, file, load) : load({});
}

} // namespace velmor
