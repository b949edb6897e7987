// Localised messages: an id, a default text in English and named parameters, filled in when
// the text is resolved.
//
//     qx::locString message(L"EFileGone", L"File [File] is gone");
//     message.params().set(name, L"File");
//     show(message.string(nullptr, qx::searchPath()));
//
// A text names its parameters in square brackets. A name without a parameter stays as it
// stands, and text that was filled in is not filled again. Numbers are shown as their
// conversion to text shows them.
//
// The text of an id comes from language files: `<file>.<language>.ini` in UTF-8 with lines
// `id=text`, `messages` being the file of messages that name none. They are looked for in
// the directories of the search path, then in those that the host has set, then in `lang`
// beside the program; read when they are first asked for and again when they have become
// newer. A language with a region (`de_CH`) falls back on the one without (`de`). An id
// that no file has takes the default text, and without one shows itself.
//
//     ; lang/messages.de.ini
//     EFileGone=Die Datei [File] ist verschwunden
//
// What fails: a file that is missing or cannot be read has no texts, which nobody is told.
#pragma once

#include "qxSharedPtr.h"
#include "qxString.h"

#include <string_view>
#include <vector>

namespace qx
{

class locString;
class textSlice;

// Directories that hold language files, asked in order. A value.
class QXUTILS_API searchPath
{
public:
    // Appends a directory, by whatever name system::current() takes. It need not exist.
    void add(const string& directory);
    const std::vector<string>& directories() const { return mDirectories; }

private:
    std::vector<string> mDirectories;
};

// A message, whoever makes it: the form in which hosts hand over messages of their own
// kind. Borrowed wherever it is passed.
class QXUTILS_API iLocString
{
public:
    virtual ~iLocString();

    // The text in `language` (null: the current one) with its parameters filled in. Null
    // when there is neither an id nor a text. The pointer is valid until the next call on
    // this object, a change of it, or its end.
    virtual const wchar_t* string(const wchar_t* language, const searchPath& path) const = 0;

    // Keeps a place among the virtual operations; does nothing and is not called.
    virtual void reserved() const;

    // True when a language file has a text for the id.
    virtual bool stringIdExists(const wchar_t* language, const searchPath& path) const = 0;
};

// The id of a message in the language files: a type of its own, so that id and text are not
// mixed up.
class locStringId
{
public:
    locStringId() = default;
    // A null id is no id.
    explicit locStringId(const wchar_t* id) : mId(id ? id : L"") {}

    const string& id() const { return mId; }

private:
    string mId;
};

// The default text of a message.
class locMessage
{
public:
    // A null text is no text, which is not the same as an empty one.
    explicit locMessage(const wchar_t* text) : mHasText(text != nullptr), mText(text ? text : L"") {}

    // Null when there is no text.
    const wchar_t* text() const { return mHasText ? mText.c_str() : nullptr; }

private:
    bool mHasText;
    string mText;
};

// An ordered list of named parameters. Setting a name that exists replaces its value.
// Copies share the list until one of them is changed, so copying never throws; set() throws
// std::bad_alloc. Not locked: copies may be used on several threads, one object not. The
// library's own message. A value; copies share their parameters. Two threads may not use
// one object at once, not even string(), which keeps the text that it gives.
class QXUTILS_API locStringParams
{
public:
    constexpr locStringParams() noexcept = default;
    locStringParams(const locStringParams& other) noexcept;
    locStringParams& operator=(const locStringParams& other) noexcept;
    ~locStringParams();

    // A nested message, copied and kept as a message, and resolved with the one around it
    // in the same language. A message that is no locString is resolved at once, in the
    // current language. Null counts as empty text. Resolving messages that are nested
    // beyond the machine stack throws unexpectedErrorException.
    void set(const iLocString* nested, const wchar_t* name);
    // A number, shown as its conversion to text shows it; a character; a text, which is
    // copied.
    void set(double number, const wchar_t* name);
    void set(long32 number, const wchar_t* name);
    void set(wchar_t character, const wchar_t* name);
    void set(const string& text, const wchar_t* name);
    // Null counts as empty text.
    void set(const wchar_t* text, const wchar_t* name);
    // For the libraries themselves: shares the buffer of `text` in place of copying it.
    void set(const textSlice& text, const wchar_t* name);

    // Appends `text` to `filled`, each [Name] that has a parameter replaced by its value.
    void fillIn(string& filled, std::wstring_view text, const wchar_t* language,
                const searchPath& path) const;

private:
    // The parameters, counted, and written by whoever is its only owner.
    struct list;

    // Stores one value, in a list of its own if others share this one.
    template <class Value>
    void store(Value&& value, const wchar_t* name);

    list* mpList = nullptr; // null: no parameter yet
};

class QXUTILS_API locString : public iLocString
{
public:
    // A message with neither id nor text: string() gives null.
    locString() : locString(locStringId(), locMessage(nullptr)) {}
    // A message whose text stands in the language files alone; without one the id is shown.
    explicit locString(const wchar_t* id) : locString(locStringId(id), locMessage(nullptr)) {}
    // `defaultText` is used when no language file has the id; null is none. `file` names
    // the language file, null the common one. `end` is null.
    locString(const wchar_t* id, const wchar_t* defaultText, const wchar_t* file = nullptr,
              const wchar_t* end = nullptr);
    locString(const locStringId& id, const locMessage& text) : mId(id), mText(text) {}

    locString(const locString& other);
    locString& operator=(const locString& other);

    const wchar_t* string(const wchar_t* language, const searchPath& path) const override;
    bool stringIdExists(const wchar_t* language, const searchPath& path) const override;

    // Empty for a message without an id.
    const qx::string& id() const { return mId.id(); }
    // To be filled in. Changing them ends the validity of what string() gave.
    locStringParams& params() { return mParams; }
    const locStringParams& params() const { return mParams; }

    // The resolved text in the current language; empty where string() gives null.
    qx::string text() const;

    // The language of all messages from now on, `de` or `de_CH` say. Empty, as at the
    // start, is the language of the default texts. May be called at any time from any
    // thread.
    static void setLanguage(const qx::string& language);
    // Replaces the host's own directories of language files. May be called at any time from
    // any thread.
    static void setLanguageDirectories(const searchPath& directories);

private:
    // A copy has all of these but the text that was resolved last.
    locStringId mId;
    locStringParams mParams;
    locMessage mText;
    qx::string mFile;
    mutable qx::string mResolved; // what string() gave last
};

} // namespace qx
