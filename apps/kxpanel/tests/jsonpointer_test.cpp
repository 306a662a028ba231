// JSON pointer lookup: escapes, array indices and every way a pointer can miss.
#include "jsonpointer.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace kx::panel {
namespace {

QJsonValue doc() {
    return QJsonDocument::fromJson(R"({
        "foo": ["bar", "baz"], "": 0, "a/b": 1, "c%d": 2, "e^f": 3, "g|h": 4,
        "i\\j": 5, "k\"l": 6, " ": 7, "m~n": 8, "~1": 9,
        "deep": {"list": [{"x": 10}, {"x": 11}]}, "n": null })")
        .object();
}

TEST(JsonPointer, FindsWhatItNames) {
    // The examples of RFC 6901, section 5, and a few of our own.
    const struct {
        const char* pointer;
        QJsonValue expected;
    } cases[] = {
        {"/foo/0", "bar"},
        {"/foo/1", "baz"},
        {"/", 0},
        {"/a~1b", 1},
        {"/c%d", 2},
        {"/e^f", 3},
        {"/g|h", 4},
        {"/i\\j", 5},
        {"/k\"l", 6},
        {"/ ", 7},
        {"/m~0n", 8},
        {"/~01", 9},
        {"/deep/list/1/x", 11},
        {"/n", QJsonValue::Null},
    };
    const QJsonValue root = doc();
    for (const auto& c : cases) {
        const auto v = ResolveJsonPointer(root, QString::fromUtf8(c.pointer));
        ASSERT_TRUE(v) << c.pointer;
        EXPECT_EQ(*v, c.expected) << c.pointer;
    }
    EXPECT_EQ(ResolveJsonPointer(root, ""), root);
}

TEST(JsonPointer, MissesGiveNothing) {
    const char* misses[] = {
        "foo",      // no leading slash
        "/nope",    // missing key
        "/foo/2",   // past the end
        "/foo/-",   // one past the end names no element
        "/foo/01",  // leading zero
        "/foo/-1",  // not an index
        "/foo/ 1",  // not an index
        "/foo/99999999999",
        "/foo/0/x",          // into a string
        "/deep/list/0/x/y",  // into a number
        "/n/x",              // into null
        "/~1",               // "/" is not a key here
        "/a~1b/c",
    };
    const QJsonValue root = doc();
    for (const char* p : misses)
        EXPECT_FALSE(ResolveJsonPointer(root, QString::fromUtf8(p))) << p;
}

}  // namespace
}  // namespace kx::panel
