// The markup document as a base of catalogues.
#pragma once

#include "catalog/Markup.h"

/// A document that may be owned and destroyed through a pointer to this class.
class CMarkupSTL : public CMarkup {
public:
    virtual ~CMarkupSTL() = default;
};
