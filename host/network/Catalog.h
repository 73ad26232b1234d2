// The catalogues of the contract, read from text files among the support files.
//
// "CA_LABEL_CATALOG" (support/CA_LABEL_CATALOG.cfg) holds the label types of catchment areas: a section for each, in
// the order of the sections' names, with "name", "name.hr" or "name.en" (shown in that language), one "line" for each
// line of the label, "height" and "color". A section with "group" is a group node of that name.
#pragma once

#include "contracts/NetworkTopology.h"
#include "host/services/KeyValueText.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// What a label shows: lines with placeholders {name}, {area}, {gross}, {net}, {coeff}, {density}, {slope}.
struct LabelType {
    std::wstring name;
    std::vector<std::wstring> lines;
    double textHeight = 2.0; ///< drawing units
    int color = 256;         ///< colour index; 256 by layer
};

class LabelCatalogItem final : public ZEMGis::Data::CCatalogItem {
public:
    explicit LabelCatalogItem(LabelType type) : m_type(std::move(type)) {}
    int IsGroup() const override { return 0; }
    std::wstring GetName() const override { return m_type.name; }
    const LabelType &type() const { return m_type; }

private:
    LabelType m_type;
};

class CatalogGroup final : public ZEMGis::Data::CCatalogItem {
public:
    explicit CatalogGroup(std::wstring name) : m_name(std::move(name)) {}
    int IsGroup() const override { return 1; }
    std::wstring GetName() const override { return m_name; }

private:
    std::wstring m_name;
};

class LabelCatalog final : public ZEMGis::Data::CCatalog {
public:
    /// Reads the text of a catalogue file. A section without a name or without lines is left out, and told; so is
    /// every line that makes no sense.
    LabelCatalog(std::string_view text, std::string_view language);
    ElementsMap *GetAllElementsMap() override;
    const std::vector<Finding> &findings() const { return m_findings; }

private:
    ElementsMap m_elements;
    std::vector<Finding> m_findings;
};

} // namespace velmor
