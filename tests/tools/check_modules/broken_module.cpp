// The translation with six faults, each that of one broken copy in tests/tools/data/check:
// greeting lacks {user} (parameter_missing.xml), file_missing has an unmatched brace
// (unbalanced_brace.xml), sample_hint gained {user} (hint_gained.xml), colour is missing
// (missing_key.xml), status has a leading blank (leading_blank.xml) and extra_row is not in
// the reference (extra_key.xml).
#include <iterator>

#include "demo_catalogue.h"

namespace {

constexpr ic::test::DemoRow kRows[] = {
    {u"greeting", u"你好！"},
    {u"file_missing", u"文件{uri缺失。"},
    {u"file_missing_no_uri", u"文件缺失。"},
    {u"duplicate", u"标记{tag}在{tag}处打开。"},
    {u"sample_hint", u"请尝试{user}以外的名称。"},
    {u"line_label", u"行 "},
    {u"brace_literal", u"此处需要\\{。"},
    {u"status", u" 完成。"},
    {u"extra_row", u"多余"},
};

const ic::test::DemoCatalogue<kRows, std::size(kRows)> demo;

}  // namespace
