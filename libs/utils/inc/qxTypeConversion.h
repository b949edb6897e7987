// Conversion between held types.
//
// The manager knows the conversions of the library's own types and those that others add. It is asked by the
// holders when a value of one type is read or written as another. Nothing here depends on a locale, and a
// refused conversion is the result false, never an exception (an exhausted machine stack apart).
#pragma once

#include "qxExport.h"
#include "qxString.h"
#include "qxTypes.h"

#include <typeinfo>

namespace qx::typeconvert
{

class QXUTILS_API typeConverterBase
{
public:
    virtual const std::type_info& sourceType() const = 0;
    virtual const std::type_info& destinationType() const = 0;
    // True when `*destination` has been written; otherwise it is unchanged. `format` and `formatText` are 0
    // and null.
    virtual bool convert(void* destination, const void* source, int format, char* formatText) const = 0;

protected:
    ~typeConverterBase() = default;
};

// A converter made of a plain function; null converts nothing.
template <class From, class To>
class typeConverter final : public typeConverterBase
{
public:
    using function = bool (*)(void* destination, const void* source, int format, char* formatText);

    constexpr explicit typeConverter(function converter) noexcept : mpFunction(converter) {}

    const std::type_info& sourceType() const override { return typeid(From); }
    const std::type_info& destinationType() const override { return typeid(To); }
    bool convert(void* destination, const void* source, int format, char* formatText) const override
    {
        return mpFunction && mpFunction(destination, source, format, formatText);
    }

private:
    function mpFunction;
};

class QXUTILS_API typeConversionManager
{
public:
    // The one manager of the process; never destroyed.
    static typeConversionManager& instance();

    // Registers a converter, which stays the caller's and must live until it is removed and no conversion is
    // under way. It goes before the conversions that are known already; where it refuses, those are asked.
    // Null adds nothing. Safe from several threads.
    void add(typeConverterBase* converter);
    void remove(typeConverterBase* converter) noexcept;

    // True when `*to` now holds `*from` as a `toType`; otherwise `*to` is unchanged.
    bool convert(const std::type_info& toType, void* to, const std::type_info& fromType, const void* from,
                 int format, char* formatText) const;

    // True when there is a conversion between the two types, whatever it makes of a single value.
    bool exists(const std::type_info& toType, const std::type_info& fromType) const;

private:
    typeConversionManager();
    ~typeConversionManager() = default;

    struct tables;
    tables* mpTables;
};

// The conversion between two plain types, by the same rules: numbers, text, dates and times; also from the
// standard's wide text to text. Other pairs do not link. `format` is the least width of an integer written as
// text, filled with zeros after its sign (0: as many digits as it takes); `formatText` is null. False leaves
// `to` unchanged.
template <class To, class From>
bool dtconvert(To& to, const From& from, int format, char* formatText);

} // namespace qx::typeconvert
