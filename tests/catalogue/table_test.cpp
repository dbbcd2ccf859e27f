// Column finder, field reader and trimming of the configuration tables.
#include <gtest/gtest.h>

#include "catalogue/table.h"

namespace catalogue {
namespace {

TEST(TrimAll, RemovesBlanksTabsNulAndLineEndsButKeepsQuotes) {
    struct Case { std::string in, out; };
    const Case cases[] = {
        {"  abc  ", "abc"},
        {"\tabc\t", "abc"},
        {std::string("\0abc\0", 5), "abc"},
        {"\r\nabc\r\n", "abc"},
        {"\n\r \t abc \t\r\n\r\n", "abc"},
        {"a b", "a b"},
        {"\"quoted\"", "\"quoted\""},
        {" \"q\" ", "\"q\""},
        {"", ""},
        {" \t\r\n", ""},
    };
    for (const Case& c : cases) EXPECT_EQ(TrimAll(c.in), c.out) << "input: [" << c.in << "]";
}

TEST(FindColumn, FindsKeysInAnyOrderAndCase) {
    struct Case { std::string header, key; int column; };
    const Case cases[] = {
        {"MACHINE,CONFIGFILE,MACHINEFILE", "MACHINE", 0},
        {"MACHINE,CONFIGFILE,MACHINEFILE", "MACHINEFILE", 2},
        {"machinefile, Machine ,configfile", "MACHINE", 1},
        {"machinefile, Machine ,configfile", "CONFIGFILE", 2},
        {"machinefile, Machine ,configfile", "machinefile", 0},
        {"A,B,C", "D", -1},
        // A key is matched whole, not as a prefix.
        {"MACHINEFILE,MACHINE", "MACHINE", 1},
        {"\tSIZE\t,MAX", "SIZE", 0},
        // A quoted field keeps its quotes and hides its commas.
        {"\"A,B\",C", "C", 1},
        {"\"A,B\",C", "A", -1},
        {"\"C\",C", "C", 1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(FindColumn(c.header, c.key), c.column) << c.header << " / " << c.key;
}

TEST(FindColumn, EmptyHeaderFieldStopsTheSearchAndMatches) {
    struct Case { std::string header, key; int column; };
    const Case cases[] = {
        {",MACHINE,CONFIGFILE", "MACHINE", 0},
        {",MACHINE,CONFIGFILE", "CONFIGFILE", 0},
        {",MACHINE,CONFIGFILE", "ANYTHING", 0},
        {"MACHINE,,CONFIGFILE", "MACHINE", 0},
        {"MACHINE,,CONFIGFILE", "CONFIGFILE", 1},
        {"MACHINE, ,CONFIGFILE", "CONFIGFILE", 1},
        // A trailing comma answers every missing key with the empty last field.
        {"A,B,", "MISSING", 2},
        {"A,B,", "B", 1},
        // An empty header line matches every key at 0.
        {"", "CONTEXT", 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(FindColumn(c.header, c.key), c.column) << c.header << " / " << c.key;
}

// GetField, and RowFields which the readers use to split a row once: both
// must give the same field for every line.
TEST(GetField, ReturnsTrimmedFieldOrEmpty) {
    struct Case { std::string line; int n; std::string field; };
    const Case cases[] = {
        {"a,b,c", 0, "a"},
        {"a,b,c", 2, "c"},
        {"a,b,c", 3, ""},
        {"a,b,c", -1, ""},
        {" a , b ", 1, "b"},
        {"a,,c", 1, ""},
        {"a,,c", 2, "c"},
        {"\"A,B\",C", 0, "\"A,B\""},
        {"\"A,B\",C", 1, "C"},
        {"x,\"1,2,3\",y", 2, "y"},
        // An unclosed quote runs to the end of the line.
        {"\"open,a,b", 0, "\"open,a,b"},
        {"\"open,a,b", 1, ""},
        {"a,b\r", 1, "b"},
        {"", 0, ""},
        {"", 1, ""},
        {",", 1, ""},
        {"a,\"b\"c,d", 1, "\"b\"c"},
        {"a,\"b\"c,d", 2, "d"},
        {std::string("a,\0b\0,c", 7), 1, "b"},
        {"a,\t\"q, r\" ,z", 1, "\"q"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(GetField(c.line, c.n), c.field) << c.line << " #" << c.n;
        EXPECT_EQ(RowFields(c.line).Get(c.n), c.field) << c.line << " #" << c.n;
    }
}

}  // namespace
}  // namespace catalogue
