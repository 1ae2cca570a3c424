// The scanners of records change no byte outside the field, wherever a block ends.
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "cli/records/csv_format.h"
#include "cli/records/json_format.h"
#include "cli/records/json_string.h"
#include "cli/records/lines_format.h"
#include "tests/support/record_runs.h"

namespace latchkey::test {
namespace {

using namespace cli;  // NOLINT: the namespace under test

using MakeFormat = std::function<std::unique_ptr<RecordFormat>()>;

MakeFormat Csv(std::size_t column, bool hasHeader, const std::optional<std::string>& added = {}) {
  return [=] { return std::make_unique<CsvFormat>(CsvOptions{{}, column, hasHeader, ',', added}); };
}

CsvOptions Named(const char* name) {
  CsvOptions options;
  options.columnName = name;
  return options;
}

MakeFormat Json(const std::string& field, const std::optional<std::string>& added = {}) {
  return [=] { return std::make_unique<JsonFormat>(field, added); };
}

std::unique_ptr<RecordFormat> Lines() { return std::make_unique<LinesFormat>(); }

RecordRun Through(const MakeFormat& make, std::string_view input,
                  const RecordRunOptions& options = {}) {
  const auto format = make();
  return RunRecordsOf(*format, input, options);
}

constexpr std::string_view kLines = "one\r\n\n two \r\r\nthree\n\r\nlast";
constexpr std::string_view kCsv =
    "id,name,note\r\n1,Ann,\"a, \"\"b\"\"\nc\"\r\n2,,x\n\n3,\"\",y\n4\n5,\"in\r\nquotes "
    "\"\"q\"\"\",\"\n\n\",\n"
    "6,tail\r";
constexpr std::string_view kBadCsv = "a,b\n1,x\"y\n2,z\"z\n3,\"w\"v\n4,good\n5,\"no end,\n6,\n";
constexpr std::string_view kJson =
    "{\"a\":1.50,\"s\":\"one\",\"n\":-0.0e1}\r\n\n{ \"x\" : "
    "{\"s\":\"no\",\"y\":[1,{\"z\":\"}\\\"\"}]} , "
    "\"s\" : \"\\\\t\\n\" }  "
    "\n{\"s\":null}\n{}\n{\"s\":\"first\",\"s\":\"\"}\n{\"t\":\"caf\xC3\xA9\"}";
constexpr std::string_view kBadJson =
    "[\"s\"]\n{\"s\":5}\n{\"s\":\"\\ud800\"}\n{\"s\":\"\\x\"}\n{\"s\":\"x\"} more\n{\"s\" "
    "\"x\"}\n{\"s\":\"ok\"}\n{\"s\":\"x";

struct Case {
  const char* name;
  MakeFormat make;
  std::string_view input;
  bool isIdentity;
};

std::vector<Case> Cases() {
  return {{"lines", Lines, kLines, true},
          {"csv", Csv(2, true), kCsv, true},
          {"csv without header", Csv(1, false), kCsv, true},
          {"last column", Csv(3, true), kCsv, true},
          {"added column", Csv(2, true, "new"), kCsv, false},
          {"bad csv", Csv(2, true), kBadCsv, true},
          {"json", Json("s"), kJson, true},
          {"added member", Json("s", "new"), kJson, false},
          {"replaced member", Json("s", "n"), kJson, false},
          {"bad json", Json("s"), kBadJson, true}};
}

TEST(RecordBlocksTest, TheSameValuesGiveTheSameBytes) {
  for (const Case& each : Cases()) {
    if (!each.isIdentity) continue;
    EXPECT_EQ(Through(each.make, each.input).output, each.input) << each.name;
  }
}

TEST(RecordBlocksTest, EveryBorderGivesTheSameOutputAndFailures) {
  for (const Case& each : Cases()) {
    for (const bool reverses : {false, true}) {
      const RecordRun whole = Through(each.make, each.input, {.reverses = reverses});
      for (std::size_t size = 1; size <= each.input.size() + 1; ++size) {
        for (const std::size_t workers : {std::size_t{1}, std::size_t{3}}) {
          const RecordRun run = Through(each.make, each.input, {size, workers, reverses});
          ASSERT_EQ(run.output, whole.output) << each.name << " in blocks of " << size;
          ASSERT_EQ(run.failures, whole.failures) << each.name << " in blocks of " << size;
          ASSERT_EQ(run.counts.records, whole.counts.records) << each.name;
        }
      }
    }
  }
}

TEST(RecordBlocksTest, ReversedValuesChangeNothingElse) {
  const RecordRunOptions reversed{.reverses = true};
  EXPECT_EQ(Through(Lines, kLines, reversed).output, "eno\r\n\n\r owt \r\neerht\n\r\ntsal");
  EXPECT_EQ(Through(Csv(2, true), kCsv, reversed).output,
            "id,name,note\r\n1,nnA,\"a, \"\"b\"\"\nc\"\r\n2,,x\n\n3,\"\",y\n4\n5,\"\"\"q\"\" "
            "setouq\n\rni\",\"\n\n\",\n6,liat\r");
  EXPECT_EQ(Through(Json("s"), kJson, reversed).output,
            "{\"a\":1.50,\"s\":\"eno\",\"n\":-0.0e1}\r\n\n{ \"x\" : "
            "{\"s\":\"no\",\"y\":[1,{\"z\":\"}\\\"\"}]} , \"s\" : \"\\nt\\\\\" }  "
            "\n{\"s\":null}\n{}\n{\"s\":\"first\",\"s\":\"\"}\n{\"t\":\"caf\xC3\xA9\"}");
}

TEST(RecordBlocksTest, ABomStaysAndIsNotPartOfTheField) {
  const std::string mark = "\xEF\xBB\xBF";
  const RecordRunOptions reversed{.reverses = true};
  EXPECT_EQ(Through(Lines, mark + "ab\n", reversed).output, mark + "ba\n");
  EXPECT_EQ(Through(Csv(1, false), mark + "\"ab\",c\n", reversed).output, mark + "\"ba\",c\n");
  EXPECT_EQ(Through([] { return std::make_unique<CsvFormat>(Named("a")); }, mark + "a,b\nxy,z\n",
                    reversed)
                .output,
            mark + "a,b\nyx,z\n");
  EXPECT_THROW(Through(Lines,
                       "\xFF\xFE"
                       "a"),
               CommandError);
}

TEST(CsvFormatTest, AnAddedColumnIsInEveryRow) {
  EXPECT_EQ(Through(Csv(1, true, "n,w"), "a,b\r\nx,1\r\n,2\n\n\"q\",3", {.reverses = true}).output,
            "a,b,\"n,w\"\r\nx,1,x\r\n,2,\n\n\"q\",3,q");
  EXPECT_EQ(Through(Csv(2, false, ""), "1,a\n2\n", {.reverses = true}).output, "1,a,a\n2,\n");
}

TEST(CsvFormatTest, ResultsAreQuotedWhereTheyMustBe) {
  const RecordRunOptions reversed{.reverses = true};
  EXPECT_EQ(Through(Csv(1, false, ""), "\"a,b\"\n\"x\"\"\"\n\"\"\n\"\n\"\n.\\\n", reversed).output,
            "\"a,b\",\"b,a\"\n\"x\"\"\",\"\"\"x\"\n\"\",\"\"\n\"\n\",\"\n\"\n.\\,\"\\.\"\n");
}

TEST(CsvFormatTest, AnotherDelimiterSeparates) {
  const auto make = [] { return std::make_unique<CsvFormat>(CsvOptions{"b", 0, true, ';', "c"}); };
  EXPECT_EQ(Through(make, "a,x;b\n1,2;34\n", {.reverses = true}).output, "a,x;b;c\n1,2;34;43\n");
}

TEST(CsvFormatTest, FailuresHaveTheLineOfTheirRecord) {
  const auto failures = Through(Csv(2, true), kBadCsv).failures;
  ASSERT_EQ(failures.size(), 3U);
  // The quotes of lines 2 and 3 enclose a line end, as for COPY.
  EXPECT_EQ(failures[0].first, 2U);
  EXPECT_EQ(failures[1].first, 4U);
  EXPECT_EQ(failures[2].first, 6U);
}

TEST(CsvFormatTest, ACarriageReturnNeedsQuotes) {
  const RecordRun run = Through(Csv(1, false), "a\rb,c\r\n\"a\rb\",c\rd\n", {.reverses = true});
  EXPECT_EQ(run.output, "a\rb,c\r\n\"b\ra\",c\rd\n");
  EXPECT_EQ(run.counts.failed, 1U);
}

TEST(CsvFormatTest, AWrongHeaderIsAFailure) {
  const auto byName = [](const char* name) {
    return [=] { return std::make_unique<CsvFormat>(Named(name)); };
  };
  EXPECT_EQ(Through(byName("b"), "a,\"b\"\n1,xy\n", {.reverses = true}).output, "a,\"b\"\n1,yx\n");
  EXPECT_THROW(Through(byName("c"), "a,b\n"), CommandError);
  EXPECT_THROW(Through(byName("a"), "a,a\n"), CommandError);
  EXPECT_THROW(Through(Csv(3, true), "a,b\n"), CommandError);
  EXPECT_THROW(Through(Csv(1, true, "b"), "a,b\n"), CommandError);
  EXPECT_THROW(Through(byName("a"), "\"a"), CommandError);
  EXPECT_EQ(Through(byName("c"), "").output, "");
}

TEST(JsonFormatTest, TheResultIsReplacedOrAddedUnderAnotherName) {
  const RecordRunOptions reversed{.reverses = true};
  EXPECT_EQ(
      Through(Json("s", "n"), "{\"s\":\"ab\" ,\"n\":[1, 2]}\n{\"s\":\"cd\" }\n{\"n\":1}", reversed)
          .output,
      "{\"s\":\"ab\" ,\"n\":\"ba\"}\n{\"s\":\"cd\",\"n\":\"dc\" }\n{\"n\":1}");
  EXPECT_EQ(Through(Json("s", "a\"b"), "{\"s\":\"ab\"}", reversed).output,
            "{\"s\":\"ab\",\"a\\\"b\":\"ba\"}");
}

TEST(JsonFormatTest, ANameMayBeEscaped) {
  EXPECT_EQ(
      Through(Json("s\""), "{\"\\u0073\\\"\":\"ab\",\"s\":\"cd\"}", {.reverses = true}).output,
      "{\"\\u0073\\\"\":\"ba\",\"s\":\"cd\"}");
}

TEST(JsonFormatTest, ALineThatIsNotAnObjectWithAStringFails) {
  const RecordRun run = Through(Json("s"), kBadJson);
  EXPECT_EQ(run.counts.failed, 7U);
  EXPECT_EQ(run.counts.changed, 1U);
  EXPECT_EQ(Through(Json("s"), "{\"s\":5}\n[1]\n", {.onError = OnError::Null}).output,
            "{\"s\":null}\n[1]\n");
}

TEST(JsonStringTest, EscapesAreThoseOfTheStandard) {
  WipedBytes text;
  ASSERT_TRUE(
      UnescapeJson(BytesOf("\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0041\\u00e4\\u20AC\\ud83d\\ude00"), text));
  EXPECT_EQ(TextOf(text), "\"\\/\b\f\n\r\tA\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  for (const char* const wrong :
       {"\\", "\\a", "\\u12", "\\u12g4", "\\ud800", "\\ud800\\u0041", "\\udc00"}) {
    WipedBytes none;
    EXPECT_FALSE(UnescapeJson(BytesOf(wrong), none)) << wrong;
  }
  WipedBytes escaped;
  AppendJsonString(BytesOf(std::string_view("\"\\/\b\x01\x1F\x7F\xC3\xA4\0", 10)), escaped);
  EXPECT_EQ(TextOf(escaped), "\"\\\"\\\\/\\b\\u0001\\u001f\x7F\xC3\xA4\\u0000\"");
}

TEST(OnErrorTest, RecordsThatFailAreLeftOutKeptOrEmptied) {
  constexpr std::string_view kInput = "a,b\n41,1\nxx,2\n\"4\",3\n42,4\n";
  const auto run = [&](OnError onError, const std::optional<std::string>& added = {}) {
    return Through(Csv(1, true, added), kInput, {.onError = onError, .form = FieldForm::Hex})
        .output;
  };
  EXPECT_EQ(run(OnError::Skip), "a,b\n41,1\n42,4\n");
  EXPECT_EQ(run(OnError::Keep), kInput);
  EXPECT_EQ(run(OnError::Null), "a,b\n41,1\n,2\n,3\n42,4\n");
  EXPECT_EQ(run(OnError::Stop), "a,b\n41,1\n");
  EXPECT_EQ(run(OnError::Keep, "c"), "a,b,c\n41,1,41\nxx,2,\n\"4\",3,\n42,4,42\n");
}

std::optional<std::string> Decoded(FieldForm form, std::string_view text) {
  WipedBytes bytes(1, '>');
  if (FieldCodecs(kBytesEncoding).Make(form)->Decode(BytesOf(text), bytes)) {
    EXPECT_EQ(TextOf(bytes), ">") << text;
    return {};
  }
  return TextOf(bytes).substr(1);
}

std::string Encoded(FieldForm form, std::string_view bytes) {
  WipedBytes text(1, '>');
  EXPECT_FALSE(FieldCodecs(kBytesEncoding).Make(form)->Encode(BytesOf(bytes), text));
  return TextOf(text).substr(1);
}

TEST(FieldCodecTest, HexadecimalTakesPrefixesSpacesAndBothCases) {
  for (const char* const good :
       {"4a4B4c", "\\x4a4b4c", "0x4A4B4C", "0X4a4b4c", " 4a 4b\t4c\r\n", " \\x4a4b4c "}) {
    EXPECT_EQ(Decoded(FieldForm::Hex, good), "JKL") << good;
  }
  for (const char* const bad : {"4", "4a4", "4g", "g4", "\\x4", "0x0x41", "x41", "4a-4b", "/0",
                                ":0", "@0", "`0", "\xC4\xB1"}) {
    EXPECT_EQ(Decoded(FieldForm::Hex, bad), std::nullopt) << bad;
  }
  EXPECT_EQ(Decoded(FieldForm::Hex, ""), "");
  std::string bytes;
  for (int i = 0; i < 2000; ++i) bytes += static_cast<char>(i * 7);
  EXPECT_EQ(Decoded(FieldForm::Hex, Encoded(FieldForm::Hex, bytes)), bytes);
  EXPECT_EQ(Encoded(FieldForm::Hex, "\x0A\xFF"), "0AFF");
}

// RFC 4648, section 10.
TEST(FieldCodecTest, Base64HasTheStandardsValues) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 7> kValues{
      {{"", ""},
       {"f", "Zg=="},
       {"fo", "Zm8="},
       {"foo", "Zm9v"},
       {"foob", "Zm9vYg=="},
       {"fooba", "Zm9vYmE="},
       {"foobar", "Zm9vYmFy"}}};
  for (const auto& [bytes, text] : kValues) {
    EXPECT_EQ(Encoded(FieldForm::Base64, bytes), text);
    EXPECT_EQ(Decoded(FieldForm::Base64, text), bytes);
  }
  EXPECT_EQ(Decoded(FieldForm::Base64, "Zm9v\r\nYm Fy\n"), "foobar");
  EXPECT_EQ(Decoded(FieldForm::Base64, "+/+/"), "\xFB\xFF\xBF");
  for (const char* const bad : {"Z", "Zg", "Zg=", "Zg===", "=Zg=", "Z===", "====", "Zh==", "Zm9=",
                                "Zm9v=", "Zm9v====", "Zg==Zg==", "Zm-_", "Zm9\x01", "Zm8=\x80"}) {
    EXPECT_EQ(Decoded(FieldForm::Base64, bad), std::nullopt) << bad;
  }
  std::string bytes;
  for (int i = 0; i < 2000; ++i) bytes += static_cast<char>(i * 7);
  EXPECT_EQ(Decoded(FieldForm::Base64, Encoded(FieldForm::Base64, bytes)), bytes);
}

TEST(FieldCodecTest, TextIsConvertedStrictly) {
  const auto page = FieldCodecs("windows-1252").Make(FieldForm::Text);
  WipedBytes bytes;
  WipedBytes text;
  EXPECT_FALSE(page->Decode(BytesOf("Zo\xC3\xAB"), bytes));
  EXPECT_EQ(TextOf(bytes), "Zo\xEB");
  EXPECT_FALSE(page->Encode(bytes, text));
  EXPECT_EQ(TextOf(text), "Zo\xC3\xAB");
  EXPECT_TRUE(page->Decode(BytesOf("\xC5\x81"), bytes));  // a letter that the page lacks
  EXPECT_TRUE(page->Decode(BytesOf("\xEB"), bytes));
  EXPECT_EQ(TextOf(bytes), "Zo\xEB");
  const auto utf8 = FieldCodecs("utf-8").Make(FieldForm::Text);
  EXPECT_TRUE(utf8->Encode(BytesOf("Zo\xEB"), text));
  EXPECT_TRUE(utf8->Decode(BytesOf("Zo\xEB"), text));
  const auto wide = FieldCodecs("utf-16le").Make(FieldForm::Text);
  bytes.clear();
  EXPECT_FALSE(wide->Decode(BytesOf("A"), bytes));
  EXPECT_EQ(TextOf(bytes), std::string("A\0", 2));
}

}  // namespace
}  // namespace latchkey::test
