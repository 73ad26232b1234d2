#include "host/editor/Loading.h"

#include "host/editor/Captions.h"
#include "host/editor/Session.h"
#include "host/network/InpImport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProgressDialog>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <future>

namespace velmor {

namespace {

/// A load that is done by then shows nothing.
constexpr std::chrono::milliseconds kMoment{250};
constexpr std::chrono::milliseconds kBetweenLooks{40};
constexpr int kSteps = 1000;

/// One piece of work, whose parts run on a thread of their own or on the window's. Nothing is seen of it before a
/// moment has passed.
class Waiting {
public:
    Waiting(QWidget &window, const std::filesystem::path &file) : m_window(window), m_file(file)
    {
        m_sinceStart.start();
    }

    /// Runs a part on a thread of its own; it tells by told() how far it is.
    template <class Work>
    auto beside(const Work &work)
    {
        auto running = std::async(std::launch::async, work);
        const auto hasEnded = [&](std::chrono::milliseconds patience) {
            return running.wait_for(patience) == std::future_status::ready;
        };
        if (hasEnded(std::max(kMoment - std::chrono::milliseconds(m_sinceStart.elapsed()), kNoTime)))
            return running.get();
        show();
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, m_dialog.get(), [&] {
            showDone();
            if (hasEnded(kNoTime))
                loop.quit();
        });
        look.start(kBetweenLooks);
        loop.exec();
        return running.get();
    }

    /// Told by the work, on whatever thread; false when it was cancelled.
    bool told(double done)
    {
        m_done = done;
        return !m_cancelled;
    }
    /// The same on the window's thread, which takes in now and then what the person did.
    bool toldHere(double done)
    {
        m_done = done;
        if (m_sinceStart.elapsed() >= kMoment.count() &&
            (!m_sinceLook.isValid() || m_sinceLook.elapsed() >= kBetweenLooks.count())) {
            show();
            showDone();
            QCoreApplication::processEvents();
            m_sinceLook.start();
        }
        return !m_cancelled;
    }

private:
    static constexpr std::chrono::milliseconds kNoTime{0};

    void show()
    {
        if (m_dialog)
            return;
        m_dialog = std::make_unique<QProgressDialog>(
            uiString("ui.loading.text").arg(QString::fromStdString(m_file.filename().string())),
            uiString("ui.loading.cancel"), 0, kSteps, &m_window);
        m_dialog->setWindowTitle(uiString("ui.loading.title"));
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setAutoClose(false);
        m_dialog->setAutoReset(false);
        m_dialog->setMinimumDuration(0);
        m_dialog->setAccessibleName(uiString("ui.loading.title"));
        QObject::connect(m_dialog.get(), &QProgressDialog::canceled, m_dialog.get(), [this] {
            m_cancelled = true;
            m_dialog->setLabelText(uiString("ui.loading.cancelling"));
            m_dialog->show(); // until it has really ended
        });
        m_dialog->show();
    }
    void showDone() { m_dialog->setValue(static_cast<int>(m_done * kSteps)); }

    QWidget &m_window;
    std::filesystem::path m_file;
    QElapsedTimer m_sinceStart, m_sinceLook;
    std::atomic<double> m_done = 0.0;
    std::atomic<bool> m_cancelled = false;
    std::unique_ptr<QProgressDialog> m_dialog;
};

} // namespace

QWidget *shownWindowOf(const Session &session)
{
    auto *window = dynamic_cast<QWidget *>(session.view());
    return window && window->isVisible() ? window : nullptr;
}

LoadResult loadBeside(QWidget &window, const std::filesystem::path &file,
                      const std::function<LoadResult(const LoadOptions &)> &work)
{
    Waiting waiting(window, file);
    const LoadOptions options{[&](double done) { return waiting.told(done); }};
    return waiting.beside([&] { return work(options); });
}

LoadResult loadBeside(QWidget *window, const std::filesystem::path &file)
{
    const auto load = [&file](const LoadOptions &options) { return Drawing::load(file, options); };
    return window ? loadBeside(*window, file, load) : load({});
}

NetworkImportResult importBeside(QWidget *window, Drawing &drawing, const std::filesystem::path &file,
                                 const NetworkImportOptions &options)
{
    if (!window)
        return importInp(drawing, file, options);
    constexpr double kReadingShare = 0.3;
    Waiting waiting(*window, file);
    InpNetwork network = waiting.beside(
        [&] { return readInpFile(file, options, [&](double done) { return waiting.told(kReadingShare * done); }); });
    return drawNetwork(drawing, std::move(network), file.string(),
                       [&](double done) { return waiting.toldHere(kReadingShare + (1.0 - kReadingShare) * done); });
}

} // namespace velmor
