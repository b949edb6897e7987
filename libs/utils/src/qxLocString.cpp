// Localised messages: the list of parameters, shared until it is changed, and filling a
// text in. The texts themselves come from the catalogue (qxMessageCatalogue.h).
#include "qxLocString.h"

#include "qxMessageCatalogue.h"
#include "qxNumberText.h"
#include "qxStack.h"
#include "qxTextSlice.h"

#include <algorithm>
#include <atomic>
#include <utility>
#include <variant>

namespace qx
{

void searchPath::add(const string& directory)
{
    mDirectories.push_back(directory);
}

iLocString::~iLocString() = default;

void iLocString::reserved() const {}

// The parameters of one or more messages: written by its only owner alone.
struct locStringParams::list
{
    using value = std::variant<textSlice, sharedPtr<locString>, double, long32, wchar_t>;
    struct entry
    {
        qx::string name;
        list::value value;
    };

    list() = default;
    explicit list(const std::vector<entry>& other) : entries(other) {}

    list* share() noexcept
    {
        owners.fetch_add(1, std::memory_order_relaxed);
        return this;
    }
    // Messages may be nested deeper than the machine stack: a list that ends while another does waits for it.
    void release() noexcept
    {
        static thread_local list* waiting = nullptr;
        static thread_local bool isEnding = false;
        if (owners.fetch_sub(1, std::memory_order_acq_rel) != 1)
            return;
        next = std::exchange(waiting, this);
        if (std::exchange(isEnding, true))
            return;
        while (list* const ended = waiting) {
            waiting = ended->next;
            delete ended;
        }
        isEnding = false;
    }

    const entry* find(std::wstring_view name) const
    {
        const auto found =
            std::find_if(entries.begin(), entries.end(), [name](const entry& e) { return e.name == name; });
        return found == entries.end() ? nullptr : &*found;
    }

    std::atomic<unsigned> owners{1};
    list* next = nullptr; // among those that wait for their end
    std::vector<entry> entries;
};

locStringParams::locStringParams(const locStringParams& other) noexcept
    : mpList(other.mpList ? other.mpList->share() : nullptr)
{}

locStringParams& locStringParams::operator=(const locStringParams& other) noexcept
{
    list* const kept = other.mpList ? other.mpList->share() : nullptr;
    if (list* const dropped = std::exchange(mpList, kept))
        dropped->release();
    return *this;
}

locStringParams::~locStringParams()
{
    if (mpList)
        mpList->release();
}

template <class Value>
void locStringParams::store(Value&& value, const wchar_t* name)
{
    if (!mpList) {
        mpList = new list;
    } else if (mpList->owners.load(std::memory_order_acquire) != 1) {
        list* const own = new list(mpList->entries);
        std::exchange(mpList, own)->release();
    }
    const std::wstring_view wanted = name ? std::wstring_view(name) : std::wstring_view();
    for (list::entry& e : mpList->entries) {
        if (e.name == wanted) {
            e.value = std::forward<Value>(value);
            return;
        }
    }
    mpList->entries.push_back({qx::string(std::wstring(wanted)), std::forward<Value>(value)});
}

void locStringParams::set(const iLocString* nested, const wchar_t* name)
{
    if (const auto* message = dynamic_cast<const locString*>(nested))
        store(sharedPtr<locString>(new locString(*message)), name);
    else
        set(nested ? nested->string(nullptr, searchPath()) : nullptr, name);
}

void locStringParams::set(double number, const wchar_t* name)
{
    store(number, name);
}

void locStringParams::set(long32 number, const wchar_t* name)
{
    store(number, name);
}

void locStringParams::set(wchar_t character, const wchar_t* name)
{
    store(character, name);
}

void locStringParams::set(const string& text, const wchar_t* name)
{
    store(textSlice(text), name);
}

void locStringParams::set(const wchar_t* text, const wchar_t* name)
{
    store(textSlice(string(text ? text : L"")), name);
}

void locStringParams::set(const textSlice& text, const wchar_t* name)
{
    store(text, name);
}

namespace
{

// Appends one parameter as text.
struct parameterWriter
{
    string& filled;
    const wchar_t* language;
    const searchPath& path;

    void operator()(const textSlice& text) const { filled.append(text.view()); }
    void operator()(wchar_t character) const { filled.push_back(character); }
    void operator()(const sharedPtr<locString>& message) const
    {
        stack::check();
        // A copy resolves, so that several threads may fill one message in.
        const locString nested(*message);
        if (const wchar_t* text = nested.string(language, path))
            filled.append(text);
    }
    void operator()(double number) const { filled.append(numberText(number).view()); }
    void operator()(long32 number) const { filled.append(numberText(number).view()); }
};

} // namespace

void locStringParams::fillIn(string& filled, std::wstring_view text, const wchar_t* language,
                             const searchPath& path) const
{
    std::size_t done = 0;
    std::size_t close = 0;
    while (done < text.size()) {
        const std::size_t open = text.find(L'[', done);
        if (open == text.npos)
            break;
        if (close <= open) // one bracket may close many
            close = text.find(L']', open);
        if (close == text.npos)
            break;
        filled.append(text.substr(done, open - done));
        if (const list::entry* parameter =
                mpList ? mpList->find(text.substr(open + 1, close - open - 1)) : nullptr) {
            std::visit(parameterWriter{filled, language, path}, parameter->value);
            done = close + 1;
        } else {
            filled.push_back(L'[');
            done = open + 1;
        }
    }
    filled.append(text.substr(std::min(done, text.size())));
}

locString::locString(const wchar_t* id, const wchar_t* defaultText, const wchar_t* file, const wchar_t*)
    : mId(id), mText(defaultText), mFile(file ? file : L"")
{}

locString::locString(const locString& other)
    : iLocString(), mId(other.mId), mParams(other.mParams), mText(other.mText), mFile(other.mFile)
{}

locString& locString::operator=(const locString& other)
{
    mId = other.mId;
    mParams = other.mParams;
    mText = other.mText;
    mFile = other.mFile;
    return *this;
}

const wchar_t* locString::string(const wchar_t* language, const searchPath& path) const
{
    qx::string translated;
    const wchar_t* text = mText.text();
    if (messageCatalogue::instance().find(mId.id(), language, mFile, path, translated))
        text = translated.c_str();
    if (!text && mId.id().empty())
        return nullptr;
    mResolved.clear();
    if (text)
        mParams.fillIn(mResolved, text, language, path);
    else
        mResolved = mId.id();
    return mResolved.c_str();
}

bool locString::stringIdExists(const wchar_t* language, const searchPath& path) const
{
    qx::string ignored;
    return messageCatalogue::instance().find(mId.id(), language, mFile, path, ignored);
}

qx::string locString::text() const
{
    return string(nullptr, searchPath()) ? mResolved : qx::string();
}

void locString::setLanguage(const qx::string& language)
{
    messageCatalogue::instance().setLanguage(language);
}

void locString::setLanguageDirectories(const searchPath& directories)
{
    messageCatalogue::instance().setDirectories(directories);
}

} // namespace qx
