// Texts laid out once and drawn often.
#pragma once

#include "controls/rules/TreeListItem.h"

#include <QFont>
#include <QRect>
#include <QStaticText>

#include <string>
#include <string_view>
#include <unordered_map>

class QPainter;

/// The text as a string; control characters, line ends among them, become spaces.
QString OneLine(const TreeListText &text);

/// The laid out texts of one control. Texts of the last few thousand cells are kept, by their characters.
class CTreeListTexts {
public:
    /// The font of what follows; another one than before forgets all texts.
    void SetFont(const QFont &font);
    /// One line within place, vertically centred; one that is too wide ends in an ellipsis. It counts as too wide when
    /// it needs more than margin pixels at the right of place as well. alignment: horizontal. The painter's pen is the
    /// colour; its font is the one of SetFont.
    void Draw(QPainter &painter, const QRect &place, int margin, const TreeListText &text, Qt::Alignment alignment);
    /// Pixels a whole text takes.
    int WidthOf(const TreeListText &text);

private:
    /// A text's characters with their size in front.
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const std::string &key) const;
        std::size_t operator()(const TreeListText &text) const;
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(const std::string &one, const std::string &other) const { return one == other; }
        bool operator()(const TreeListText &text, const std::string &key) const;
        bool operator()(const std::string &key, const TreeListText &text) const { return operator()(text, key); }
    };
    struct Entry {
        QStaticText whole, cut;
        int width = 0, height = 0;
        int cutFor = -1, cutWidth = 0; ///< cut is what fits into cutFor pixels
    };
    using Texts = std::unordered_map<std::string, Entry, Hash, Equal>;

    Entry &Find(const TreeListText &text);
    QStaticText LaidOut(const QString &text) const;

    QFont m_font;
    bool m_bFont = false;
    Texts m_young, m_old; ///< what is drawn comes to the young ones; when they are many, the old ones go
};
