// What stands where in a painted tree list, found out from what the painter was told and not from the control.
#pragma once

#include "controls/treelist/TreeListCtrl.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPixmap>
#include <QRegion>

#include <utility>
#include <vector>

/// Paints a control once and keeps a part for every pixel. What is painted later covers what was painted before.
///
/// All rows of the control are selected, and its text cells are filled with colours of the selection, which the map
/// knows by kTextFill; the item images are of one colour, kImageFill; a check box is any other picture of 16 x 16, a
/// lock one of 8 x 16, a button a box of 9 x 9 in the middle of its 16 x 16. Any other fill takes away what was there.
class PartMap {
public:
    static constexpr QRgb kTextFill = qRgb(1, 2, 3);
    static constexpr QRgb kImageFill = qRgb(200, 0, 200);
    /// As the control keeps colours: blue, green, red.
    static constexpr std::uint32_t kTextFillColor = 0x030201;

    PartMap(const CTreeListCtrl &list, const QSize &size)
        : m_size(size), m_parts(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height())),
          m_labels(m_parts.size())
    {
        Engine engine(*this);
        Device device(engine, size);
        QPainter painter(&device);
        list.DrawCtrl(painter, QRect(QPoint(0, 0), size));
    }

    /// TreeListHit, 0 for none.
    int PartAt(int x, int y) const { return m_parts[Index(x, y)]; }
    /// First character of the text that was painted in the text cell at that point; 0 for none.
    char16_t LabelAt(int x, int y) const { return m_labels[Index(x, y)]; }
    int CountOf(int part) const
    {
        int count = 0;
        for (const int one : m_parts)
            count += one == part ? 1 : 0;
        return count;
    }

private:
    class Engine : public QPaintEngine {
    public:
        explicit Engine(PartMap &map) : QPaintEngine(AllFeatures), m_map(map) {}
        bool begin(QPaintDevice *) override { return true; }
        bool end() override { return true; }
        Type type() const override { return User; }
        void updateState(const QPaintEngineState &) override {}
        void drawRects(const QRect *rects, int count) override
        {
            for (int index = 0; index < count; ++index)
                m_map.Filled(rects[index], painter()->brush().color().rgb(), Clip());
        }
        void drawRects(const QRectF *rects, int count) override
        {
            for (int index = 0; index < count; ++index)
                m_map.Filled(rects[index].toRect(), painter()->brush().color().rgb(), Clip());
        }
        void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}
        void drawPixmap(const QRectF &rect, const QPixmap &pixmap, const QRectF &) override
        {
            m_map.Picture(rect.toRect(), pixmap, Clip());
        }
        void drawTextItem(const QPointF &at, const QTextItem &text) override
        {
            m_map.Text(QPoint(qRound(at.x() + text.width() / 2), qRound(at.y()) - 2), text.text());
        }

    private:
        QRegion Clip() const
        {
            const QRegion all(QRect(QPoint(0, 0), m_map.m_size));
            return painter()->hasClipping() ? painter()->clipRegion() & all : all;
        }
        PartMap &m_map;
    };
    class Device : public QPaintDevice {
    public:
        Device(Engine &engine, const QSize &size) : m_engine(engine), m_size(size) {}
        QPaintEngine *paintEngine() const override { return &m_engine; }

    protected:
        int metric(PaintDeviceMetric which) const override
        {
            switch (which) {
            case PdmWidth:
                return m_size.width();
            case PdmHeight:
                return m_size.height();
            case PdmDevicePixelRatio:
                return 1;
            case PdmDevicePixelRatioScaled:
                return static_cast<int>(devicePixelRatioFScale());
            case PdmDpiX:
            case PdmDpiY:
            case PdmPhysicalDpiX:
            case PdmPhysicalDpiY:
                return 96;
            case PdmDepth:
                return 32;
            default:
                return QPaintDevice::metric(which);
            }
        }

    private:
        Engine &m_engine;
        QSize m_size;
    };

    std::size_t Index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_size.width()) + static_cast<std::size_t>(x);
    }
    void Put(const QRect &rect, int part, const QRegion &clip)
    {
        for (const QRect &piece : clip &rect) {
            for (int y = piece.top(); y <= piece.bottom(); ++y) {
                for (int x = piece.left(); x <= piece.right(); ++x) {
                    m_parts[Index(x, y)] = part;
                    m_labels[Index(x, y)] = 0;
                }
            }
        }
    }
    void Filled(const QRect &rect, QRgb color, const QRegion &clip)
    {
        if (color == kTextFill) {
            Put(rect, kHitText, clip);
            m_lastText = QRegion(rect) & clip;
        } else if (rect.width() == 9 && rect.height() == 9) {
            Put(rect.adjusted(-4, -4, 3, 3), kHitButton, clip);
        } else if (rect.width() > 1 && rect.height() > 1 && rect.size() != QSize(7, 7)) {
            Put(rect, 0, clip); // neither a line nor the inside of a button
        }
    }
    void Picture(const QRect &rect, const QPixmap &pixmap, const QRegion &clip)
    {
        if (rect.size() == QSize(8, 16))
            Put(rect, kHitLock, clip);
        else if (rect.size() == QSize(16, 16))
            Put(rect, pixmap.toImage().pixel(8, 8) == kImageFill ? kHitImage : kHitCheck, clip);
    }
    void Text(const QPoint &middle, const QString &text)
    {
        if (!text.isEmpty() && m_lastText.boundingRect().contains(middle)) {
            for (const QRect &piece : m_lastText) {
                for (int y = piece.top(); y <= piece.bottom(); ++y) {
                    for (int x = piece.left(); x <= piece.right(); ++x)
                        m_labels[Index(x, y)] = text.front().unicode();
                }
            }
        }
    }

    QSize m_size;
    std::vector<int> m_parts;
    std::vector<char16_t> m_labels;
    QRegion m_lastText;
};
