// Reading and writing files, and the files that are none.
#include "catalog/MarkupFile.h"
#include "catalog/Markup.h"
#include "tests/catalog/PlainUser.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>

namespace fs = std::filesystem;
using testing::IsEmpty;
using velmor::test::asPlainUser;

namespace {

std::wstring systemText(int error)
{
    const std::string text = std::strerror(error);
    return {text.begin(), text.end()};
}

class MarkupFiles : public testing::Test {
protected:
    MarkupFiles()
    {
        std::string name = (fs::temp_directory_path() / "velmor-markup-XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~MarkupFiles() override
    {
        std::error_code ignored;
        fs::permissions(m_folder, fs::perms::owner_all, ignored);
        fs::remove_all(m_folder, ignored);
    }

    fs::path path(const char *name = "a.xml") const { return m_folder / name; }
    std::wstring wide(const char *name = "a.xml") const { return path(name).wstring(); }
    void put(const std::string &bytes, const char *name = "a.xml") const
    {
        std::ofstream(path(name), std::ios::binary) << bytes;
    }
    std::string bytesOf(const char *name = "a.xml") const
    {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::uintmax_t fileNumber() const
    {
        struct stat status {};
        EXPECT_EQ(::stat(path().c_str(), &status), 0);
        return status.st_ino;
    }
    std::vector<std::string> names() const
    {
        std::vector<std::string> found;
        for (const auto &entry : fs::directory_iterator(m_folder))
            found.push_back(entry.path().filename().string());
        return found;
    }

    fs::path m_folder;
};

TEST_F(MarkupFiles, AreReadAndParsedWithANote)
{
    put("<a b='1'/>");
    CMarkup document;
    EXPECT_TRUE(document.Load(wide()));
    EXPECT_EQ(document.GetErrorText(), L"10 bytes to 10 wide chars");
    EXPECT_TRUE(document.FindElement(L"a"));
}

TEST_F(MarkupFiles, AParseErrorStandsBehindTheNote)
{
    put("<a><b></a>");
    CMarkup document;
    EXPECT_FALSE(document.Load(wide()));
    EXPECT_EQ(document.GetErrorText(), L"10 bytes to 10 wide chars, End tag 'a' at offset 7 does not match start tag "
                                       L"'b' at offset 3");
    EXPECT_TRUE(document.FindChildElement(L"b"));
}

TEST_F(MarkupFiles, AnEmptyOneIsAnEmptyDocument)
{
    put("");
    CMarkup document;
    EXPECT_FALSE(document.Load(wide()));
    EXPECT_EQ(document.GetErrorText(), L"0 bytes to 0 wide chars, Empty document");
}

TEST_F(MarkupFiles, AreUtf8)
{
    put("<a b='\xC5\xA0uma \xE2\x82\xAC \xF0\x9F\x98\x80'/>");
    CMarkup document;
    EXPECT_TRUE(document.Load(wide()));
    EXPECT_EQ(document.GetErrorText(), L"23 bytes to 17 wide chars");
    document.FindElement();
    EXPECT_EQ(document.GetAttribute(L"b"), L"\u0160uma \u20AC \U0001F600");
    EXPECT_TRUE(document.Save(wide("b.xml")));
    EXPECT_EQ(document.GetErrorText(), L"17 wide chars to 23 bytes");
    EXPECT_EQ(bytesOf("b.xml"), bytesOf());
}

TEST_F(MarkupFiles, ADeclaredEncodingIsNotRead)
{
    put("<?xml version='1.0' encoding='windows-1250'?><a b='\xC5\xA0'/>");
    CMarkup document;
    EXPECT_TRUE(document.Load(wide()));
    document.FindElement();
    EXPECT_EQ(document.GetAttribute(L"b"), L"\u0160");
}

TEST_F(MarkupFiles, AByteOrderMarkIsKeptAsTheFirstCharacter)
{
    const std::string bytes = "\xEF\xBB\xBF<?xml version='1.0'?><a/>";
    put(bytes);
    CMarkup document;
    EXPECT_TRUE(document.Load(wide()));
    EXPECT_EQ(document.GetText().front(), L'\uFEFF');
    EXPECT_TRUE(document.FindElement(L"a"));
    EXPECT_TRUE(document.SetAttribute(L"b", L"1"));
    EXPECT_TRUE(document.Save(wide()));
    EXPECT_EQ(bytesOf(), "\xEF\xBB\xBF<?xml version='1.0'?><a b=\"1\"/>");
}

TEST_F(MarkupFiles, NoneIsWrittenByItself)
{
    CMarkup document;
    document.SetText(L"<a/>");
    EXPECT_TRUE(document.Save(wide()));
    EXPECT_EQ(bytesOf(), "<a/>");
}

TEST_F(MarkupFiles, BytesThatAreNotUtf8ComeBackAsTheyWere)
{
    // A lone continuation, an overlong form, a half of a pair, a cut character, beyond the last one.
    const std::string bytes = "<a b='\x8A \xC0\xAF \xED\xB2\x80 \xE2\x82 \xF5\x80\x80\x80 \xFF'><c/>\xC5</a>\xE2\x82";
    put(bytes);
    CMarkup document;
    EXPECT_TRUE(document.Load(wide()));
    EXPECT_EQ(document.GetErrorText(), L"37 bytes to 37 wide chars");
    document.FindElement();
    EXPECT_EQ(document.GetAttribute(L"b")[0], wchar_t{0xDC8A});
    document.FindChildElement();
    EXPECT_TRUE(document.SetChildAttribute(L"d", L"1"));
    EXPECT_TRUE(document.Save(wide()));
    std::string expected = bytes;
    expected.insert(expected.find("<c") + 2, " d=\"1\"");
    EXPECT_EQ(bytesOf(), expected);
}

TEST_F(MarkupFiles, WhatIsNoCharacterIsWrittenAsTheReplacement)
{
    CMarkup document;
    document.SetText(std::wstring(L"<a b='") + wchar_t{0xD800} + wchar_t{0x110000} + wchar_t{-1} + L"'/>");
    EXPECT_TRUE(document.Save(wide()));
    EXPECT_EQ(bytesOf(), "<a b='\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD'/>");
}

TEST_F(MarkupFiles, LongTextsOfMixedCharactersComeBack)
{
    // Characters of each length lie across the ends of all pieces and blocks.
    std::string bytes = "<a>";
    for (int i = 0; i < 60000; ++i)
        bytes += i % 7 == 0 ? "\xF0\x9F\x98\x80" : i % 5 == 0 ? "\xE2\x82\xAC" : i % 3 == 0 ? "\xC5\xA0" : "x";
    bytes += "</a>\xC5";
    put(bytes);
    CMarkup document;
    EXPECT_TRUE(document.Load(wide()));
    EXPECT_EQ(document.GetText().size(), 60008u);
    EXPECT_TRUE(document.Save(wide("b.xml")));
    EXPECT_TRUE(bytesOf("b.xml") == bytes);
}

TEST_F(MarkupFiles, OneThatIsNotThereLeavesTheDocument)
{
    CMarkup document;
    document.SetText(L"<a><b/></a>");
    document.FindElement();
    EXPECT_FALSE(document.Load(wide("none.xml")));
    EXPECT_EQ(document.GetErrorText(), systemText(ENOENT));
    EXPECT_EQ(document.GetText(), L"<a><b/></a>");
    EXPECT_TRUE(document.FindChildElement(L"b"));
    EXPECT_FALSE(document.Load(L""));
    EXPECT_FALSE(document.Load(nullptr));
    EXPECT_EQ(document.GetErrorText(), systemText(ENOENT));
}

TEST_F(MarkupFiles, AFolderIsNoFile)
{
    CMarkup document;
    EXPECT_FALSE(document.Load(m_folder.wstring()));
    EXPECT_EQ(document.GetErrorText(), systemText(EISDIR));
    EXPECT_FALSE(document.Save(m_folder.wstring()));
    EXPECT_EQ(document.GetErrorText(), systemText(EISDIR));
    EXPECT_FALSE(document.Save(m_folder.wstring() + L"/"));
    EXPECT_EQ(document.GetErrorText(), systemText(EISDIR));
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MarkupFiles, AFileOfAHundredMegabytesIsReadAndWritten)
{
    const std::string line = "\n<item name='0123456789' value='\xC5\xA0\xC4\x8D 456789abcde'/>";
    std::size_t count = 0;
    {
        std::ofstream stream(path(), std::ios::binary);
        stream << "<list>";
        for (std::size_t bytes = 0; bytes < 100000000; bytes += line.size(), ++count)
            stream << line;
        stream << "</list>";
    }
    CMarkup document;
    ASSERT_TRUE(document.Load(wide()));
    EXPECT_EQ(document.GetIndex().End(), count + 2);
    EXPECT_EQ(document.GetErrorText(), std::to_wstring(fs::file_size(path())) + L" bytes to " +
                                           std::to_wstring(fs::file_size(path()) - 2 * count) + L" wide chars");
    document.FindElement();
    document.FindChildElement();
    EXPECT_EQ(document.GetChildAttribute(L"value"), L"\u0160\u010D 456789abcde");
    EXPECT_TRUE(document.SetChildAttribute(L"name", L"x"));
    EXPECT_TRUE(document.Save(wide("b.xml")));
    EXPECT_EQ(fs::file_size(path("b.xml")), fs::file_size(path()) - 9);
}

TEST_F(MarkupFiles, APipeIsNoFileToRead)
{
    ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
    CMarkup document;
    EXPECT_FALSE(document.Load(wide()));
    EXPECT_EQ(document.GetErrorText(), systemText(ESPIPE));
}

TEST_F(MarkupFiles, OneWhoseReadFailsLeavesTheDocument)
{
    // The loopback device has no speed: the file opens and has a size, and only the read tells that.
    const fs::path failing = "/sys/class/net/lo/speed";
    const int file = ::open(failing.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        GTEST_SKIP() << "this system has no file whose read fails";
    char byte = 0;
    const bool reads = ::read(file, &byte, 1) >= 0;
    const int error = errno;
    ::close(file);
    if (reads)
        GTEST_SKIP() << "this system has no file whose read fails";
    CMarkup document;
    document.SetText(L"<a/>");
    EXPECT_FALSE(document.Load(failing.wstring()));
    EXPECT_EQ(document.GetErrorText(), systemText(error));
    EXPECT_EQ(document.GetText(), L"<a/>");
}

TEST_F(MarkupFiles, AnUnreadableOneTellsTheSystemsText)
{
    put("<a/>");
    fs::permissions(path(), fs::perms::none);
    fs::permissions(m_folder, fs::perms(0755));
    EXPECT_TRUE(asPlainUser([&] {
        CMarkup document;
        return !document.Load(wide()) && document.GetErrorText() == systemText(EACCES);
    }));
}

TEST_F(MarkupFiles, NamesMayHoldAnyCharacter)
{
    CMarkup document;
    document.SetText(L"<a/>");
    const std::wstring name = m_folder.wstring() + L"/\u0160uma \u20AC.xml";
    EXPECT_TRUE(document.Save(name));
    EXPECT_TRUE(document.Load(name));
    EXPECT_TRUE(fs::exists(m_folder / "\xC5\xA0uma \xE2\x82\xAC.xml"));
}

TEST_F(MarkupFiles, ASaveReplacesTheFileAndLeavesNoOther)
{
    put("<old>a much longer text than the new one has</old>");
    fs::permissions(path(), fs::perms(0640));
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_TRUE(document.Save(wide()));
    EXPECT_EQ(document.GetErrorText(), L"6 wide chars to 6 bytes");
    EXPECT_EQ(bytesOf(), "<new/>");
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms(0640));
    EXPECT_EQ(names(), std::vector<std::string>{"a.xml"});
}

TEST_F(MarkupFiles, ASaveKeepsTheModeThatNewFilesWouldNotGet)
{
    put("<old/>");
    fs::permissions(path(), fs::perms(0666));
    const mode_t mask = ::umask(022);
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_TRUE(document.Save(wide()));
    ::umask(mask);
    EXPECT_EQ(bytesOf(), "<new/>");
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms(0666));
}

TEST_F(MarkupFiles, ASaveKeepsTheOwnerAndTheModeThatAChangeOfOwnerWouldTake)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the system's administrator can give a file away";
    put("<old/>");
    ASSERT_EQ(::chown(path().c_str(), 65534, 65533), 0);
    ASSERT_EQ(::chmod(path().c_str(), 06750), 0);
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_TRUE(document.Save(wide()));
    EXPECT_EQ(bytesOf(), "<new/>");
    struct stat status {};
    ASSERT_EQ(::stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 65534u);
    EXPECT_EQ(status.st_gid, 65533u);
    EXPECT_EQ(status.st_mode & 07777, 06750u);
}

TEST_F(MarkupFiles, ANewOneHasThePermissionsOfNewFiles)
{
    const mode_t mask = ::umask(027);
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_TRUE(document.Save(wide()));
    ::umask(mask);
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms(0640));
}

TEST_F(MarkupFiles, AnEmptyDocumentMakesAnEmptyFile)
{
    put("<old/>");
    CMarkup document;
    EXPECT_TRUE(document.Save(wide()));
    EXPECT_EQ(document.GetErrorText(), L"0 wide chars to 0 bytes");
    EXPECT_EQ(fs::file_size(path()), 0u);
}

TEST_F(MarkupFiles, ALinkStaysAndItsFileIsReplaced)
{
    put("<old/>");
    fs::create_symlink("a.xml", path("link.xml"));
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_TRUE(document.Save(wide("link.xml")));
    EXPECT_TRUE(fs::is_symlink(path("link.xml")));
    EXPECT_EQ(bytesOf(), "<new/>");
}

TEST_F(MarkupFiles, AFolderThatIsNotThereIsToldAndNothingMade)
{
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_FALSE(document.Save(m_folder.wstring() + L"/none/a.xml"));
    EXPECT_EQ(document.GetErrorText(), systemText(ENOENT));
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(document.Save(L""));
    EXPECT_EQ(document.GetErrorText(), systemText(ENOENT));
}

TEST_F(MarkupFiles, AFullDeviceIsTold)
{
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "there is no full device here";
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_FALSE(document.Save(L"/dev/full"));
    EXPECT_EQ(document.GetErrorText(), systemText(ENOSPC));
    EXPECT_TRUE(fs::exists("/dev/full"));
}

/// No file may grow beyond the limit meanwhile, as on a disk that is full.
bool limited(rlim_t limit, const std::function<bool()> &run)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit rule{limit, RLIM_INFINITY};
    return ::setrlimit(RLIMIT_FSIZE, &rule) == 0 && run();
}

TEST_F(MarkupFiles, WithoutRoomTheOldFileStays)
{
    put("<old/>");
    fs::permissions(m_folder, fs::perms(0777));
    fs::permissions(path(), fs::perms(0666));
    EXPECT_TRUE(asPlainUser([&] {
        CMarkup document;
        document.SetText(L"<new>" + std::wstring(5000, L'x') + L"</new>");
        return limited(1000, [&] { return !document.Save(wide()) && document.GetErrorText() == systemText(EFBIG); });
    }));
    EXPECT_EQ(bytesOf(), "<old/>");
    EXPECT_EQ(names(), std::vector<std::string>{"a.xml"});
}

TEST_F(MarkupFiles, InAFolderThatTakesNoNewFilesTheFileIsWrittenInPlace)
{
    put("<old>longer than the new one</old>");
    fs::permissions(path(), fs::perms(0666));
    fs::permissions(m_folder, fs::perms(0555));
    const std::uintmax_t node = fileNumber();
    EXPECT_TRUE(asPlainUser([&] {
        CMarkup document;
        document.SetText(L"<new>\u0160</new>");
        return document.Save(wide()) && document.GetErrorText() == L"12 wide chars to 13 bytes";
    }));
    EXPECT_EQ(bytesOf(), "<new>\xC5\xA0</new>");
    EXPECT_EQ(fileNumber(), node);
}

TEST_F(MarkupFiles, InPlaceTheOldTextStaysWhereThereIsNoRoomForTheNew)
{
    put("<old/>");
    fs::permissions(path(), fs::perms(0666));
    fs::permissions(m_folder, fs::perms(0555));
    EXPECT_TRUE(asPlainUser([&] {
        CMarkup document;
        document.SetText(L"<new>" + std::wstring(5000, L'x') + L"</new>");
        return limited(1000, [&] { return !document.Save(wide()) && document.GetErrorText() == systemText(EFBIG); });
    }));
    EXPECT_EQ(bytesOf(), "<old/>");
}

TEST_F(MarkupFiles, AReadOnlyFileIsNotReplaced)
{
    put("<old/>");
    fs::permissions(path(), fs::perms(0444));
    fs::permissions(m_folder, fs::perms(0777));
    EXPECT_TRUE(asPlainUser([&] {
        CMarkup document;
        document.SetText(L"<new/>");
        return !document.Save(wide()) && document.GetErrorText() == systemText(EACCES);
    }));
    EXPECT_EQ(bytesOf(), "<old/>");
}

TEST_F(MarkupFiles, WhatAKilledSaveLeftIsTakenAwayByTheNext)
{
    put("<half", ".a.xml.0.new");
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_TRUE(document.Save(wide()));
    EXPECT_EQ(bytesOf(), "<new/>");
    EXPECT_EQ(names(), std::vector<std::string>{"a.xml"});
}

TEST_F(MarkupFiles, AnotherSaveOnItsWayIsLeftAlone)
{
    put("<other", ".a.xml.0.new");
    const int other = ::open(path(".a.xml.0.new").c_str(), O_WRONLY);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    CMarkup document;
    document.SetText(L"<new/>");
    EXPECT_TRUE(document.Save(wide()));
    EXPECT_EQ(bytesOf(), "<new/>");
    EXPECT_EQ(bytesOf(".a.xml.0.new"), "<other");
    ::close(other);
}

TEST_F(MarkupFiles, OneBeyondTheLimitIsRefusedBeforeItIsRead)
{
    put("<a/>");
    fs::resize_file(path(), std::uintmax_t{1} << 30); // holes: takes no room
    CMarkup document;
    document.SetText(L"<b/>");
    rusage before{}, after{};
    ::getrusage(RUSAGE_SELF, &before);
    EXPECT_FALSE(document.Load(wide()));
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 10000) << "kilobytes";
    EXPECT_EQ(document.GetErrorText(),
              L"A file of 1073741824 bytes is too long: at most 268435456 can be read; split it "
              L"into several files");
    EXPECT_EQ(document.GetText(), L"<b/>");
}

TEST_F(MarkupFiles, OneBeyondTheLimitOfAddressesIsRefusedToo)
{
    put("<a/>");
    std::error_code error;
    fs::resize_file(path(), (std::uintmax_t{1} << 32) + 4, error);
    if (error)
        GTEST_SKIP() << "no file of 4 GB can be made here";
    CMarkup document;
    EXPECT_FALSE(document.Load(wide()));
    EXPECT_EQ(document.GetErrorText().substr(0, 27), L"A file of 4294967300 bytes ");
}

TEST(MarkupUtf8, APieceMayEndInACharacter)
{
    const std::string bytes = "x\xE2\x82\xAC";
    wchar_t wide[8];
    std::size_t used = 0;
    for (std::size_t cut = 2; cut <= 3; ++cut) {
        EXPECT_EQ(MarkupFile::Widen({bytes.data(), cut}, false, wide, used) - wide, 1);
        EXPECT_EQ(used, 1u);
        EXPECT_EQ(MarkupFile::Widen({bytes.data(), cut}, true, wide, used) - wide, static_cast<long>(cut));
        EXPECT_EQ(used, cut);
    }
    EXPECT_EQ(MarkupFile::Widen(bytes, false, wide, used) - wide, 2);
    EXPECT_EQ(wide[1], L'\u20AC');
}

} // namespace
