// Named parameters: the positional texts of a call bound to declared names.
#include "assertRecorder.h"
#include "documents.h"
#include "host.h"
#include "valueText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace
{

// A host's function whose declaration and work a test chooses.
class bound final : public qx::script::singlefunction
{
public:
    using action = std::function<void(const bound& self, codecontext& context, qx::genericValue& result)>;

    explicit bound(action work) : mWork(std::move(work)) {}
    bound(const bound& other) = default;

    statement* clone() const override { return new bound(*this); }
    void destroy() override { delete this; }
    void execute(codecontext& context, qx::genericValue& result) const override
    {
        mWork(*this, context, result);
    }

    using singlefunction::getParamValue;
    using singlefunction::parse;

private:
    action mWork;
};

// Answers calls of `f` with a function of these declared names.
template <class... Declared>
hostModule::answer boundModule(const bound::action& work, const Declared&... declared)
{
    return [=](const moduleCall& call) -> statement* {
        if (call.name != L"f")
            return nullptr;
        auto made = std::make_unique<bound>(work);
        made->parse(L"F", call.params, call.flags, declared...);
        return made.release();
    };
}

// Gives `value` for each of three names, `-` for one that the call did not give.
void showThree(const bound& self, codecontext& context, qx::genericValue& result)
{
    qx::string shown;
    for (const wchar_t* name : {L"one", L"two", L"three"}) {
        qx::genericValue value = textValue(L"-");
        const bool given = self.getParamValue(name, context, value);
        EXPECT_EQ(given, valueText(value) != "string \"-\"");
        qx::string text;
        value.getValue(text);
        shown += text;
    }
    result = qx::genericValue(shown);
}

// Names without their flags are refused when they are compiled.
using qx::script::declaresParameters;
static_assert(declaresParameters<std::nullptr_t>());
static_assert(declaresParameters<wchar_t[4], bool, wchar_t[4], bool, std::nullptr_t>());
static_assert(!declaresParameters<wchar_t[4]>());
static_assert(!declaresParameters<wchar_t[4], bool, wchar_t[4]>());
static_assert(!declaresParameters<wchar_t[4], wchar_t[4], bool, std::nullptr_t>());

} // namespace

TEST(binding, goes_by_position)
{
    const hostModule::answer usual =
        boundModule(showThree, L"one", true, L"two", true, L"three", false, nullptr);
    const hostModule::answer lastTwo =
        boundModule(showThree, L"one", false, L"two", true, L"three", true, nullptr);
    const hostModule::answer twice = boundModule(showThree, L"one", false, L"one", false, nullptr);
    const struct
    {
        hostModule::answer declared;
        const wchar_t* call;
        const char* values;
        texts reasons; // behind the two links for the call
    } rows[] = {
        {usual, L"f(\"1\", \"2\")", "string \"12-\"", {}},
        // What is beyond the declared names is not looked at.
        {usual, L"f(\"1\", \"2\", \"3\", nobody(), , {a;;b})", "string \"123\"", {}},
        {usual, L"f(\"1\")", nullptr, {L"F: Number of parameters < 2"}},
        {usual, L"f(\"1\", , \"3\")", nullptr, {L"Error parsing "}},
        {usual, L"f(\"1\", nobody(x))", nullptr, {L"Error parsing nobody(x)"}},
        // A name declared twice fails once both are given.
        {twice, L"f(\"1\")", "string \"1--\"", {}},
        {twice, L"f(\"1\", \"2\")", nullptr, {L"singlefunction::parse: Error inserting parameter one"}},
        // Required ones are counted, whichever they are.
        {lastTwo, L"f(\"1\", \"2\")", "string \"12-\"", {}},
        {boundModule(showThree, nullptr), L"f(nobody())", "string \"---\"", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(qx::string(row.call).utf8());
        const hostModule host(row.declared);
        if (row.values) {
            EXPECT_EQ(valueText(evaluated(row.call)), row.values);
            continue;
        }
        texts chain = {L"Error parsing " + qx::string(row.call), L"Error parsing F(...)"};
        chain.insert(chain.end(), row.reasons.begin(), row.reasons.end());
        EXPECT_EQ(failureOf([&] { parsed(row.call); }), chain);
    }
}

TEST(binding, names_are_exact_and_each_request_evaluates_anew)
{
    const auto work = [](const bound& self, codecontext& context, qx::genericValue& result) {
        EXPECT_FALSE(self.getParamValue(L"One", context, result));
        EXPECT_FALSE(self.getParamValue(L"one ", context, result));
        EXPECT_TRUE(result.isNull());
        for (const wchar_t* name : {L"two", L"one", L"two"})
            EXPECT_TRUE(self.getParamValue(name, context, result));
        EXPECT_TRUE(self.getParamValue(nullptr, context, result)); // the empty name
    };
    const hostModule host(
        boundModule(work, L"one", true, L"two", true, L"skipped", true, L"", true, nullptr));
    const auto append = [](const wchar_t* mark) {
        return L"setvar(log, strcat(log, \"" + qx::string(mark) + L"\"))";
    };
    const ownedStatement call = parsed(L"f(" + append(L"1") + L", " + append(L"2") + L", " + append(L"3") +
                                       L", " + append(L"4") + L")");
    scriptcontext context;
    context.createVariable(nameOf(L"log"), textValue(L""));
    call->exec(context);
    EXPECT_EQ(valueText(context.variable(nameOf(L"log"))), "string \"2124\"");
}

// NAME, or NAME=OTHER for a statement that tells of a wrong call under another name. That of
// directory_getcurrent is never told: it declares nothing.
TEST(binding, statements_have_these_names_in_messages)
{
    const wchar_t* const table =
        L"condition_create condition_istrue calccrc_create calccrc_add calccrc_result "
        L"directory_getallfiles=directory_getAllFiles directory_setcurrent loaddll=loadDLL runexe=runExe "
        L"file_appendtextline=file_appendTextLine file_copy file_delete file_exchangeextension file_exists "
        L"file_loadcfg file_loadini file_make file_makeabs=file_copy file_makerelative file_name file_path "
        L"fsname_replaceinvalidchars dbleq mod sqrt obj_has=has ctxt_has=has obj_isconstant obj_isdisabled "
        L"obj_isenabled obj_isfieldvalid obj_label obj_triggerfieldchange obj_triggerfieldinfochange "
        L"obj_setconstant obj_setdisabled obj_setenabled=obj_setdisabled obj_setlabel obj_setlabelswitch "
        L"obj_setrestriction locstring locstring_getstring locstring_insertparam locstringfromid objmsg_add "
        L"objmsg_remove assert throwerror throwmessage messagebox strdelspaces strfind strlower strupper "
        L"strreplace strsplit substr";
    texts rows;
    qx::string(table).splitAt(L" ", rows, false);
    texts found;
    const assertRecorder recorder;
    for (const qx::script::statementInfo& told : builtInStatements()) {
        const std::vector<std::string> declared = wordsOf(told.parameters.utf8());
        const auto required = std::count_if(declared.begin(), declared.end(), [](const std::string& word) {
            return word.find('[') == word.npos && word != "()";
        });
        const qx::string call = told.name + (required ? L"()" : L"(nobody())");
        const texts chain = failureOf([&] { parsed(call); });
        const auto row = std::find_if(rows.begin(), rows.end(), [&](const qx::string& each) {
            return each == told.name || each.starts_with(told.name + L"=");
        });
        if (row == rows.end()) {
            EXPECT_LT(chain.size(), 3u) << told.name.utf8();
            continue;
        }
        const qx::string name = row->substr(row->find(L'=') + 1);
        const texts reasons{L"Error parsing " + call, L"Error parsing " + name + L"(...)",
                            required ? name + L": Number of parameters < " + std::to_wstring(required)
                                     : L"Error parsing nobody()"};
        EXPECT_EQ(chain, reasons);
        found.push_back(told.name);
    }
    EXPECT_EQ(found.size(), rows.size());
}

TEST(binding, prepared_type_is_kept_by_a_literal)
{
    const auto work = [](const bound& self, codecontext& context, qx::genericValue& result) {
        result = qx::genericValue(0);
        self.getParamValue(L"one", context, result);
    };
    const hostModule host(boundModule(work, L"one", true, nullptr));
    EXPECT_EQ(valueText(evaluated(L"f(\"12\")")), "int 12");
    EXPECT_EQ(failureOf([] { evaluated(L"f(\"twelve\")"); }),
              texts{L"Error executing script \"f(\"twelve\")\" "});
}
