// The overview on a real host with a made network, driven by mouse and keys.
#pragma once

#include "controls/treelist/TreeListCtrl.h"
#include "host/drawing/ChangeLog.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "overview/NetworkOverviewDlg.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QLabel>
#include <QTreeWidget>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// The network (flow from right to left, 10 units a section):
///
///     O1 <-S1- M1 <-S2- M2 <-S3- M3
///               ^-T1- M4
///
/// Areas of 0.01 ha each: A on S1 and S2 (0.25, 0.75), B on T1 (1.0), C on S3 (0.9).
class COverviewTest : public testing::Test {
protected:
    using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;
    using Shares = std::vector<std::pair<const wchar_t *, double>>;
    using Drive = std::function<void(CNetworkOverviewDlg &)>;

    COverviewTest();
    ~COverviewTest() override;

    void addNode(const std::wstring &name, double x, double y);
    /// Nodes by name; empty for none. Each GUID is the name in braces.
    void addSection(const std::wstring &name, const std::wstring &from, const std::wstring &to, double y = 0.0);
    AreaPtr addArea(const std::wstring &name, double x, const Shares &shares, int mask = 1, double coefficient = 0.5);
    void makeNetwork();

    velmor::Drawing &drawing() { return *session.drawing(); }
    velmor::Network &network() { return drawing().component<velmor::Network>(); }
    velmor::ChangeLog &log() { return drawing().component<velmor::ChangeLog>(); }
    static AreaPtr areaNamed(const std::wstring &name);

    /// Runs the dialog as its command does, drives it, then cancels it.
    void run(const Drive &drive);

    static CTreeListCtrl &tree(CNetworkOverviewDlg &dialog);
    static QTreeWidget &findings(CNetworkOverviewDlg &dialog);
    static QString text(CNetworkOverviewDlg &dialog, int control);
    static void click(CNetworkOverviewDlg &dialog, int control);
    /// The item at the end of a way of names; fails the test when there is none.
    static CTreeListItem *item(CNetworkOverviewDlg &dialog, const std::vector<std::wstring> &way);
    /// Rows as "  name|length|from|...", two blanks a level, empty texts at the end left out.
    static std::vector<std::string> rows(CNetworkOverviewDlg &dialog, const std::vector<int> &columns);
    /// A click of the mouse on a part of a row, which is brought into view first.
    static void clickPart(CNetworkOverviewDlg &dialog, CTreeListItem *item, int part, int column = 0);
    /// What was posted happens.
    static void settle();
    /// Types a name into the cell, opened by a click, and ends with a key.
    static void rename(CNetworkOverviewDlg &dialog, CTreeListItem *item, int column, const QString &name,
                       Qt::Key end = Qt::Key_Return);
    /// Groups of the list of findings: "title (count): first, second".
    static std::vector<std::string> findingsOf(CNetworkOverviewDlg &dialog);
    static QTreeWidgetItem *finding(CNetworkOverviewDlg &dialog, const QString &text);
    static void clickFinding(CNetworkOverviewDlg &dialog, const QString &text);
    /// Calls of the contracts since recording began, by operation; "operation first second ...".
    static std::vector<std::string> calls(const std::string &operation);

    std::filesystem::path folder;
    velmor::Session session;
};
