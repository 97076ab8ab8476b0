// The reference: the rows of tests/tools/data/check/reference.xml.
#include <iterator>

#include "demo_catalogue.h"

namespace {

constexpr ic::test::DemoRow kRows[] = {
    {u"greeting", u"Hello, {user}!"},
    {u"file_missing", u"The file {uri} is missing."},
    {u"file_missing_no_uri", u"The file is missing."},
    {u"duplicate", u"The tag {tag} opens at {tag}."},
    {u"sample_hint", u"Try another name."},
    {u"line_label", u"Line "},
    {u"colour", u"Red"},
    {u"brace_literal", u"Expected \\{ here."},
    {u"status", u"Done."},
};

const ic::test::DemoCatalogue<kRows, std::size(kRows)> demo;

}  // namespace
