// Makes tags in the form of the file that they go into.
#pragma once

#include "host/drawing/dxf/DxfFile.h"
#include "host/drawing/dxf/Numbers.h"

#include <string>
#include <string_view>

namespace velmor::dxf {

class TagWriter {
public:
    TagWriter(std::string &out, const FileText &file) : m_out(out), m_file(file) {}

    void code(int code)
    {
        const std::string digits = std::to_string(code);
        if (m_file.padCodes && digits.size() < 3)
            m_out.append(3 - digits.size(), ' ');
        m_out += digits;
        m_out += m_file.lineEnd;
    }
    /// A value that is ASCII already.
    void tag(int groupCode, std::string_view value)
    {
        code(groupCode);
        m_out += value;
        m_out += m_file.lineEnd;
    }
    void text(int groupCode, std::wstring_view value) { tag(groupCode, m_file.codec.encode(value)); }
    void real(int groupCode, double value) { tag(groupCode, formatReal(value)); }
    void integer(int groupCode, std::int64_t value) { tag(groupCode, std::to_string(value)); }
    void handle(int groupCode, std::uint64_t value) { tag(groupCode, formatHandle(value)); }
    void point(int groupCode, double x, double y)
    {
        real(groupCode, x);
        real(groupCode + 10, y);
    }
    void point(int groupCode, double x, double y, double z)
    {
        point(groupCode, x, y);
        real(groupCode + 20, z);
    }
    void point(int groupCode, const AcGePoint3d &p) { point(groupCode, p.x, p.y, p.z); }
    std::string &out() { return m_out; }

private:
    std::string &m_out;
    const FileText &m_file;
};

} // namespace velmor::dxf
