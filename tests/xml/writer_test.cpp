#include "base/confhelper.h"
#include "base/serializearray.h"
#include "base/stringwriter.h"
#include "support/logcapture.h"
#include "xml/fileparser.h"
#include "xml/writerkeywriter.h"
#include "xml/xmlparser.h"

#include <gtest/gtest.h>

#include <functional>

using namespace quillon;
using xml::Parser;
using xml::WriterKeyWriter;

namespace {

String written(std::function<void(WriterKeyWriter&)> const& write, String const& indentation = String()) {
    String out;
    StringWriter target(out);
    {
        WriterKeyWriter writer(target, indentation);
        write(writer);
    }
    return out;
}

/// A user's record: a string and a list.
struct Record : IConf {
    String first;
    List<String> items;

    using IConf::read;
    using IConf::write;
    void write(IKeyReader& reader) override {
        reader["a"].read(first);
        reader["list"].read(static_cast<ISerialize&>(items));
    }
    void read(IKeyWriter& writer) const override {
        writer["a"].write(first);
        writer["list"].write(static_cast<ISerialize const&>(items));
    }
};

/// Takes a number of writes and then fails, as a full disk does.
struct FullDisk : TextWriter<IWriter> {
    unsigned left;
    explicit FullDisk(unsigned writes) : left(writes) {}
    void put(char const*, unsigned) override {
        if (left == 0)
            throw Exception("EFull", "test.cpp", 1);
        --left;
    }
};

} // namespace

TEST(XmlWriter, lays_out_nested_elements) {
    EXPECT_EQ(written([](WriterKeyWriter& w) {
                  IKeyWriter& root = w[String("r")];
                  root["a"]["b"]["c"].write(true);
                  root["d"];
                  root["e"]["f"];
              }),
              "<r>\r\n <a>\r\n  <b>\r\n   <c>true</c>\r\n  </b>\r\n </a>\r\n <d></d>\r\n <e>\r\n  <f></f>\r\n"
              " </e>\r\n</r>");
    EXPECT_EQ(written([](WriterKeyWriter& w) { w["r"]["a"]; }, "--"), "\r\n--<r>\r\n-- <a></a>\r\n--</r>");
    EXPECT_EQ(written([](WriterKeyWriter&) {}), "");
}

TEST(XmlWriter, writes_scalars_as_text_and_attributes_in_the_start_tag) {
    EXPECT_EQ(written([](WriterKeyWriter& w) {
                  IKeyWriter& root = w["r"];
                  root("x", "1");
                  root("y", "<&>");
                  root["i"].write(-5);
                  root["u"].write(4000000000u);
                  root["b"].write(false);
                  root["m"].write(Memory("raw", 3));
                  root["v"].write("<&>");
              }),
              "<r x=\"1\" y=\"<&>\">\r\n <i>-5</i>\r\n <u>4000000000</u>\r\n <b>false</b>\r\n <m>raw</m>\r\n"
              " <v><&></v>\r\n</r>");
    written([](WriterKeyWriter& w) {
        IKeyWriter& root = w["r"];
        root.write("text");
        EXPECT_THROW(root("late", "1"), xml::EXmlAttribute);
    });
}

TEST(XmlWriter, copies_keys_that_do_not_outlive_the_call) {
    EXPECT_EQ(written([](WriterKeyWriter& w) {
                  char name[] = "key";
                  w[name].write("v");
                  name[0] = '!';
              }),
              "<key>v</key>");
}

TEST(XmlWriter, survives_an_output_that_fails_at_any_point) {
    for (unsigned writes = 0; writes < 40; ++writes) {
        FullDisk disk(writes);
        try {
            WriterKeyWriter writer(disk);
            writer["r"]["a"]["b"].write("1");
            writer["r"]["c"].write("2");
        } catch (Exception const& e) {
            EXPECT_EQ(e.getName(), "EFull");
        }
    }
}

TEST(XmlParserFile, reads_back_what_it_wrote) {
    test::TemporaryDirectory directory;
    String const file = directory.file("record.xml");
    Record record;
    record.first = "p&q \" ' \t\xC3\xA9 &unknown; >";
    for (char const* const item : {"one", "", "  kept \r\n as it stands  "})
        record.items.add(item);
    ASSERT_TRUE(Parser::write(file, "root", record));

    Record copy;
    Parser::read(file, "ROOT", copy);
    EXPECT_EQ(copy.first, record.first);
    EXPECT_TRUE(std::equal(record.items.begin(), record.items.end(), copy.items.begin(), copy.items.end()));
    ASSERT_TRUE(Parser::write(file, "root", Record())); // replaces the longer file
    EXPECT_NO_THROW(Parser::read(file, "root", copy));
    EXPECT_EQ(copy.first, "");
}

TEST(XmlParserFile, write_tells_of_failures_without_throwing) {
    test::TemporaryDirectory directory;
    test::LogCapture log;
    EXPECT_FALSE(Parser::write(directory.file("absent/file"), "r", Record()));
    EXPECT_TRUE(log.contains("TRACE Exception.catch EFile:")) << log.text();
    EXPECT_FALSE(Parser::write("/dev/full", "r", Record()));
}

TEST(XmlParserFile, read_tells_absent_unparsable_and_foreign_files_apart) {
    test::TemporaryDirectory directory;
    String const file = directory.file("record.xml");
    Record record;
    record.first = "before";
    {
        test::LogCapture log;
        EXPECT_THROW(Parser::read(file, "r", record), xml::EParser);
        EXPECT_EQ(log.text(), "");
    }
    test::LogCapture log;
    EXPECT_THROW(xml::FileParser::parse(file), xml::EXmlFileParser);
    EXPECT_TRUE(log.contains("cannot read the file: "));
    test::writeFile(file, "<r><a></r>");
    EXPECT_THROW(Parser::read(file, "r", record), xml::EParser);
    EXPECT_TRUE(log.contains("TRACE xml.Parser.read cannot parse the file: " + std::string(file.view())));
    test::writeFile(file, "<other/>");
    EXPECT_THROW(Parser::read(file, "r", record), xml::EParser);
    EXPECT_TRUE(log.contains("TRACE xml.Parser.read cannot find the document: r"));
    EXPECT_EQ(record.first, "before");

    test::writeFile(file, "<r><a>read</a></r>");
    EXPECT_THROW(Parser::read(file, "r", record), xml::EKeyReader);
    EXPECT_EQ(record.first, "read");
}
