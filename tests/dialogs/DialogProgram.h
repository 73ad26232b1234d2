// What every test program of a dialog needs: the toolkit's application and folders of its own.
#pragma once

#include <QApplication>

#include <filesystem>
#include <string>
#include <unistd.h>

/// The one application of the program; made at the first call.
inline QApplication &dialogApplication()
{
    static int count = 1;
    static char name[] = "dialog_test";
    static char *arguments[] = {name, nullptr};
    // Never destroyed: at the program's end its devices would outlive what the toolkit keeps of them.
    static auto *app = new QApplication(count, arguments);
    return *app;
}

/// A new empty folder; prefix begins its name. The caller removes it.
inline std::filesystem::path newDialogFolder(const std::string &prefix)
{
    static int number = 0;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / (prefix + std::to_string(getpid()) + "_" + std::to_string(++number));
    std::filesystem::create_directories(folder);
    return folder;
}
