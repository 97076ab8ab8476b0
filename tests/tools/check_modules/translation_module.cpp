// A translation of the reference without a finding: the rows of
// tests/tools/data/check/translation.xml.
#include <iterator>

#include "demo_catalogue.h"

namespace {

constexpr ic::test::DemoRow kRows[] = {
    {u"greeting", u"你好，{user}！"},
    {u"file_missing", u"文件{uri}缺失。"},
    {u"file_missing_no_uri", u"文件缺失。"},
    {u"duplicate", u"标记{tag}在{tag}处打开。"},
    {u"sample_hint", u"请尝试其他名称。"},
    {u"line_label", u"行 "},
    {u"colour", u"红色"},
    {u"brace_literal", u"此处需要\\{。"},
    {u"status", u"完成。"},
};

const ic::test::DemoCatalogue<kRows, std::size(kRows)> demo;

}  // namespace
