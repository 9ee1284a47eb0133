// Documents: a file reads as a stream does, and what is written reads back as the same tree.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <xercesc/dom/DOM.hpp>

#include "describe.h"
#include "fuzz_target.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "scratch_file.h"

namespace {

using RQCommon::RQStatus;
using rqxml_fuzz::Check;
using rqxml_fuzz::CheckEqual;
using rqxml_fuzz::Describe;
using rqxml_fuzz::Ending;
using rqxml_fuzz::ScratchFile;
using RQXPrsUtil::RQXMLReadWrite;

Ending ParseStream(RQXMLReadWrite& reader, const std::string& text) {
  std::istringstream in(text);
  return rqxml_fuzz::RunParse([&] { return reader.ParseToDOM(in); });
}

Ending ParseFile(RQXMLReadWrite& reader, const std::string& path) {
  return rqxml_fuzz::RunParse([&] { return reader.ParseToDOM(path); });
}

// The message as a parse of a stream words it: some messages name the input.
std::string MessageOf(const RQXMLReadWrite& reader, const ScratchFile& file) {
  std::string message = reader.GetXercesMessage();
  const std::size_t at = message.find(file.Path());
  return at == std::string::npos ? message : message.replace(at, file.Path().size(), "istream");
}

bool HasDocument(const Ending& ending) { return !ending.threw && ending.status.IsOK(); }

std::string Tree(RQXMLReadWrite& reader) { return rqxml_fuzz::DescribeTree(reader.GetDocument()); }

void CheckRoundTrip(RQXMLReadWrite& reader, const ScratchFile& file) {
  const std::string tree = Tree(reader);
  const RQStatus written = reader.WriteFromDOM(file.Path(), nullptr);
  CheckEqual(Tree(reader), tree, "writing leaves the document as it is");
  if (!written.IsOK()) {
    CheckEqual(Describe(written), "118", "a write that fails is a failed write");
    return;
  }
  CheckEqual(reader.GetXercesMessage(), "", "a good write has no message");
  RQXMLReadWrite again;
  CheckEqual(Describe(ParseFile(again, file.Path())), "status 0", "what is written can be read");
  CheckEqual(Tree(again), tree, "what is written reads back the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ScratchFile file("file");
  const std::string text = rqxml_fuzz::AsText(data, size);
  RQXMLReadWrite reader;
  const Ending ending = ParseStream(reader, text);
  Check((reader.GetDocument() != nullptr) == HasDocument(ending), "a document is held after good parses only");
  const std::string tree = HasDocument(ending) ? Tree(reader) : "";
  const std::string message = reader.GetXercesMessage();

  file.Write(text);
  CheckEqual(Describe(ParseFile(reader, file.Path())), Describe(ending), "a file ends as the stream does");
  CheckEqual(MessageOf(reader, file), message, "a file says what the stream does");
  if (!HasDocument(ending)) return 0;
  CheckEqual(Tree(reader), tree, "a file reads as the stream does");
  CheckRoundTrip(reader, file);
  return 0;
}
