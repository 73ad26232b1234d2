// velmor-gallery: every control of the dialogs, to try by hand.
#include "tests/gallery/GalleryWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows every control of the dialogs with its options."));
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("Starts in the dark theme."));
    const QCommandLineOption light(QStringLiteral("light"), QStringLiteral("Starts in the light theme."));
    const QCommandLineOption region(QStringLiteral("region"), QStringLiteral("Starts with the settings of a locale."),
                                    QStringLiteral("LOCALE"));
    const QCommandLineOption picture(QStringLiteral("picture"),
                                     QStringLiteral("Saves a picture of the window and ends."), QStringLiteral("FILE"));
    const QCommandLineOption control(QStringLiteral("show"), QStringLiteral("Starts at a control."),
                                     QStringLiteral("NAME"));
    parser.addOptions({dark, light, region, picture, control});
    parser.addHelpOption();
    parser.process(application);

    if (parser.isSet(region))
        QLocale::setDefault(QLocale(parser.value(region)));
    gallery::GalleryWindow window;
    if (parser.isSet(dark) || parser.isSet(light))
        window.SetTheme(parser.isSet(dark) ? 2 : 1);
    window.show();
    if (parser.isSet(control) && !window.ShowControl(parser.value(control))) {
        std::fprintf(stderr, "%s: there is no such control\n", qPrintable(parser.value(control)));
        return 1;
    }
    int result = 0;
    if (parser.isSet(picture)) {
        constexpr int kSettled = 500; // milliseconds until all is laid out and painted
        QTimer::singleShot(kSettled, &window, [&] {
            if (!window.grab().save(parser.value(picture))) {
                std::fprintf(stderr, "%s: the picture can't be written\n", qPrintable(parser.value(picture)));
                result = 1;
            }
            QApplication::quit();
        });
    }
    QApplication::exec();
    return result;
}
