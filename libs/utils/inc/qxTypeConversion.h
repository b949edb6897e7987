// Conversion between held types.
//
// The manager knows the conversions of the library's own types and those that others add.
// It is asked by the holders when a value of one type is read or written as another.
// Nothing here depends on a locale, and a refused conversion is the result false, never an
// exception (an exhausted machine stack apart).
//
//     bool colourToText(void* to, const void* from, int, char*);
//     static const qx::typeconvert::typeConverter<qx::rgbColor, qx::string> converter(colourToText);
//     qx::typeconvert::typeConversionManager::instance().add(&converter); // and remove() before it ends
//
// Types are told apart by their type_info, compared by name, so that one type is one type
// in all libraries.
#pragma once

#include "qxExport.h"
#include "qxString.h"
#include "qxTypes.h"

#include <typeinfo>

namespace qx::typeconvert
{

// One conversion, from a type to another. Written by hosts; used from several threads at
// once.
class QXUTILS_API typeConverterBase
{
public:
    // The pair that it converts, the same at each call.
    virtual const std::type_info& sourceType() const = 0;
    virtual const std::type_info& destinationType() const = 0;
    // True when `*destination` has been written; otherwise it is unchanged. Both point to
    // objects of the types above and are borrowed for the call. `format` and `formatText`
    // are 0 and null. Called without any lock held; what it throws reaches whoever reads or
    // writes the value.
    virtual bool convert(void* destination, const void* source, int format, char* formatText) const = 0;

protected:
    ~typeConverterBase() = default;
};

// A converter made of a plain function, which follows the rules of
// typeConverterBase::convert; null converts nothing.
template <class From, class To>
class typeConverter final : public typeConverterBase
{
public:
    using function = bool (*)(void* destination, const void* source, int format, char* formatText);

    // Constant: a static converter exists before any constructor runs.
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

// All conversions that the process knows. Its functions may be called from any thread at
// any time.
class QXUTILS_API typeConversionManager
{
public:
    // The one manager of the process; never destroyed, so a library may remove its
    // converters while the process ends.
    static typeConversionManager& instance();

    // Registers a converter, which stays the caller's and must live until it is removed and
    // no conversion is under way. It goes before the conversions that are known already,
    // the library's own included; where it refuses, those are asked. Null adds nothing.
    // Throws std::bad_alloc. remove ignores what was not added.
    void add(typeConverterBase* converter);
    void remove(typeConverterBase* converter) noexcept;

    // True when `*to` now holds `*from` as a `toType`; otherwise `*to` is unchanged. Equal
    // types have no conversion: the caller assigns. Throws unexpectedErrorException when
    // the machine stack is exhausted, and what an added converter throws.
    bool convert(const std::type_info& toType, void* to, const std::type_info& fromType, const void* from,
                 int format, char* formatText) const;

    // True when there is a conversion between the two types, whatever it makes of a single
    // value.
    bool exists(const std::type_info& toType, const std::type_info& fromType) const;

private:
    typeConversionManager();
    ~typeConversionManager() = default;

    // The library's own conversions and those added.
    struct tables;
    tables* mpTables;
};

// The conversion between two plain types, by the same rules: numbers, text, dates and
// times; also from the standard's wide text to text. Other pairs do not link. `format` is
// the least width of an integer written as text, filled with zeros after its sign (0: as
// many digits as it takes); `formatText` is null. False leaves `to` unchanged.
template <class To, class From>
bool dtconvert(To& to, const From& from, int format, char* formatText);

} // namespace qx::typeconvert
