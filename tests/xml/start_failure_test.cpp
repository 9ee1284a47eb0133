// The program's own definitions of three functions of the XML library stand before the library's, so that a test can
// count their calls and make them throw.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "tests/support/dom.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"
#include "tests/support/temp_folder.h"

#define INITIALIZE_NAME "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_13MemoryManagerE"
#define TERMINATE_NAME "_ZN11xercesc_3_216XMLPlatformUtils9TerminateEv"
#define PARSER_NAME "_ZN11xercesc_3_215XercesDOMParserC2EPNS_12XMLValidatorEPNS_13MemoryManagerEPNS_14XMLGrammarPoolE"
#define COMPLETE_PARSER_NAME \
  "_ZN11xercesc_3_215XercesDOMParserC1EPNS_12XMLValidatorEPNS_13MemoryManagerEPNS_14XMLGrammarPoolE"

namespace {

enum class Behaviour { PassOn, ThrowXmlException, ThrowOther };

struct Interposed {
  Behaviour initialize = Behaviour::PassOn;
  Behaviour createParser = Behaviour::PassOn;
  int initialized = 0;
  int terminated = 0;
  int parsersCreated = 0;
  const char* locale = nullptr;
  const char* nlsHome = nullptr;
  const void* panicHandler = nullptr;
  const void* memoryManager = nullptr;
};

Interposed interposed;

struct OtherFailure : std::runtime_error {
  OtherFailure() : std::runtime_error("something else") {}
};

void Behave(Behaviour behaviour) {
  switch (behaviour) {
    case Behaviour::PassOn:
      return;
    case Behaviour::ThrowXmlException:
      throw xercesc::RuntimeException(__FILE__, __LINE__, xercesc::XMLExcepts::Scan_CouldNotOpenSource,
                                      xercesc::XMLPlatformUtils::fgMemoryManager);
    case Behaviour::ThrowOther:
      throw OtherFailure();
  }
}

template <typename Function>
Function* Real(const char* name) {
  void* const found = dlsym(RTLD_NEXT, name);
  if (found == nullptr) throw std::runtime_error(std::string("not found: ") + name);
  return reinterpret_cast<Function*>(found);
}

using InitializeFunction = void(const char*, const char*, xercesc::PanicHandler*, xercesc::MemoryManager*);
using TerminateFunction = void();
using ParserFunction = void(void*, void*, xercesc::MemoryManager*, void*);

}  // namespace

#define RQ_EXPORTED extern "C" __attribute__((visibility("default")))

RQ_EXPORTED void InterposedInitialize(const char* locale, const char* nlsHome, xercesc::PanicHandler* panicHandler,
                                      xercesc::MemoryManager* memoryManager) __asm__(INITIALIZE_NAME);
RQ_EXPORTED void InterposedInitialize(const char* locale, const char* nlsHome, xercesc::PanicHandler* panicHandler,
                                      xercesc::MemoryManager* memoryManager) {
  ++interposed.initialized;
  interposed.locale = locale;
  interposed.nlsHome = nlsHome;
  interposed.panicHandler = panicHandler;
  interposed.memoryManager = memoryManager;
  Behave(interposed.initialize);
  Real<InitializeFunction>(INITIALIZE_NAME)(locale, nlsHome, panicHandler, memoryManager);
}

RQ_EXPORTED void InterposedTerminate() __asm__(TERMINATE_NAME);
RQ_EXPORTED void InterposedTerminate() {
  ++interposed.terminated;
  Real<TerminateFunction>(TERMINATE_NAME)();
}

RQ_EXPORTED void InterposedParser(void* self, void* validator, xercesc::MemoryManager* manager,
                                  void* grammarPool) __asm__(PARSER_NAME);
RQ_EXPORTED void InterposedParser(void* self, void* validator, xercesc::MemoryManager* manager, void* grammarPool) {
  ++interposed.parsersCreated;
  EXPECT_EQ(validator, nullptr);
  EXPECT_EQ(manager, xercesc::XMLPlatformUtils::fgMemoryManager);
  EXPECT_EQ(grammarPool, nullptr);
  Behave(interposed.createParser);
  Real<ParserFunction>(PARSER_NAME)(self, validator, manager, grammarPool);
}

RQ_EXPORTED void InterposedCompleteParser(void* self, void* validator, xercesc::MemoryManager* manager,
                                          void* grammarPool) __asm__(COMPLETE_PARSER_NAME);
RQ_EXPORTED void InterposedCompleteParser(void* self, void* validator, xercesc::MemoryManager* manager,
                                          void* grammarPool) {
  InterposedParser(self, validator, manager, grammarPool);
}

namespace {

using rqtest::Failure;
using rqtest::Ok;
using RQXPrsUtil::RQPMMLParser;
using RQXPrsUtil::RQXMLReadWrite;

class StartFailure : public rqtest::WithPlatform {
 protected:
  StartFailure() { interposed = Interposed(); }
  ~StartFailure() override {
    interposed.initialize = Behaviour::PassOn;
    interposed.createParser = Behaviour::PassOn;
  }
};

TEST_F(StartFailure, ReaderStartsAndStopsTheLibraryOnceWithItsDefaults) {
  {
    RQXMLReadWrite reader;
    EXPECT_EQ(interposed.initialized, 1);
    EXPECT_STREQ(interposed.locale, xercesc::XMLUni::fgXercescDefaultLocale);
    EXPECT_EQ(interposed.nlsHome, nullptr);
    EXPECT_EQ(interposed.panicHandler, nullptr);
    EXPECT_EQ(interposed.memoryManager, nullptr);
    std::istringstream stream("<a/>");
    EXPECT_EQ(reader.ParseToDOM(stream), Ok());
    EXPECT_EQ(interposed.terminated, 0);
  }
  EXPECT_EQ(interposed.initialized, 1);
  EXPECT_EQ(interposed.terminated, 1);
}

TEST_F(StartFailure, PmmlParserStartsAndStopsTheLibraryOnceWithItsDefaults) {
  {
    RQPMMLParser parser;
    EXPECT_EQ(interposed.initialized, 1);
    EXPECT_STREQ(interposed.locale, xercesc::XMLUni::fgXercescDefaultLocale);
    EXPECT_EQ(interposed.nlsHome, nullptr);
    EXPECT_EQ(interposed.panicHandler, nullptr);
    EXPECT_EQ(interposed.memoryManager, nullptr);
    EXPECT_EQ(rqtest::Parse(parser, rqtest::PmmlWithFields("")), Ok());
    EXPECT_EQ(interposed.terminated, 0);
  }
  EXPECT_EQ(interposed.initialized, 1);
  EXPECT_EQ(interposed.terminated, 1);
}

TEST_F(StartFailure, ReaderCreatesItsParserWithTheFirstParseAndThePmmlParserAtOnce) {
  RQXMLReadWrite reader;
  EXPECT_EQ(interposed.parsersCreated, 0);
  std::istringstream stream("<a/>");
  EXPECT_EQ(reader.ParseToDOM(stream), Ok());
  EXPECT_EQ(interposed.parsersCreated, 1);
  RQPMMLParser parser;
  EXPECT_EQ(interposed.parsersCreated, 2);
}

TEST_F(StartFailure, ReaderReportsItFromEveryOperationAndTouchesNoFileOrStream) {
  const rqtest::TempFolder folder;
  const std::string existing = rqtest::WriteFile(folder.File("a.xml"), "<a/>");
  const std::string absent = folder.File("out.xml");
  rqtest::Document document("<given/>");
  interposed = Interposed();
  interposed.initialize = Behaviour::ThrowXmlException;
  {
    RQXMLReadWrite reader;
    EXPECT_EQ(interposed.initialized, 1);
    EXPECT_EQ(reader.GetInitStatus(), Failure(103));
    EXPECT_EQ(reader.ParseToDOM(existing), Failure(103));
    std::istringstream stream("<a/>");
    EXPECT_EQ(reader.ParseToDOM(stream), Failure(103));
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.tellg(), std::streampos(0));
    EXPECT_EQ(reader.GetDocument(), nullptr);
    EXPECT_EQ(reader.GetXercesMessage(), "");
    EXPECT_EQ(reader.WriteFromDOM(absent, &document.Get()), Failure(103));
    EXPECT_EQ(reader.WriteFromDOM(absent, nullptr), Failure(103));
    EXPECT_EQ(reader.WriteFromDOM("/nonexistent/folder/out.xml", &document.Get()), Failure(103));
    EXPECT_FALSE(std::filesystem::exists(absent));
    EXPECT_EQ(reader.WriteFromDOM(existing, &document.Get()), Failure(103));
    EXPECT_EQ(rqtest::ReadFile(existing), "<a/>");
    EXPECT_EQ(interposed.parsersCreated, 0);
    interposed.initialize = Behaviour::PassOn;
    EXPECT_EQ(reader.ParseToDOM(existing), Failure(103)) << "the library is not started a second time";
  }
  EXPECT_EQ(interposed.initialized, 1);
  EXPECT_EQ(interposed.terminated, 0);
}

TEST_F(StartFailure, PmmlParserKeepsItAsItsStatusAndTouchesNoStream) {
  rqtest::Document document("<given/>");
  interposed = Interposed();
  interposed.initialize = Behaviour::ThrowXmlException;
  {
    RQPMMLParser parser;
    EXPECT_EQ(interposed.initialized, 1);
    EXPECT_EQ(parser.GetStatus(), Failure(103));
    EXPECT_EQ(parser.GetXercesMessage(), "");
    EXPECT_EQ(parser.GetRootElement(), nullptr);
    std::istringstream stream(rqtest::PmmlWithFields(""));
    EXPECT_EQ(parser.ParseToDOM(stream), Failure(103));
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(stream.tellg(), std::streampos(0));
    EXPECT_EQ(parser.GetStatus(), Failure(103));
    EXPECT_FALSE(parser.SetModelElmt(document.Root()));
    rqtest::RecordingVarList vars;
    EXPECT_EQ(parser.FillVarList(vars, {}, false), Failure(103));
    EXPECT_EQ(vars.calls, rqtest::Calls());
    EXPECT_EQ(interposed.parsersCreated, 0);
  }
  EXPECT_EQ(interposed.terminated, 0);
}

TEST_F(StartFailure, OtherExceptionsOfTheStartPassOut) {
  interposed.initialize = Behaviour::ThrowOther;
  EXPECT_THROW(RQXMLReadWrite(), OtherFailure);
  EXPECT_THROW(RQPMMLParser(), OtherFailure);
  EXPECT_EQ(interposed.terminated, 0);
}

TEST_F(StartFailure, ParserThatTheReaderCannotCreateIsAFailedStartOfThatParseOnly) {
  RQXMLReadWrite reader;
  std::istringstream first("<a/>");
  ASSERT_EQ(reader.ParseToDOM(first), Ok());
  interposed.createParser = Behaviour::ThrowXmlException;
  // The parser in use may serve again; a reader that never parsed has to create one.
  RQXMLReadWrite fresh;
  std::istringstream second("<b/>");
  EXPECT_EQ(fresh.ParseToDOM(second), Failure(103));
  EXPECT_EQ(fresh.GetDocument(), nullptr);
  EXPECT_EQ(fresh.GetXercesMessage(), "");
  EXPECT_EQ(fresh.GetInitStatus(), Ok());
  interposed.createParser = Behaviour::PassOn;
  std::istringstream third("<c/>");
  EXPECT_EQ(fresh.ParseToDOM(third), Ok());
  EXPECT_EQ(rqtest::Tag(fresh.GetDocument()->getDocumentElement()), u"c");
}

TEST_F(StartFailure, ParserThatThePmmlParserCannotCreateIsAFailedStart) {
  interposed.createParser = Behaviour::ThrowXmlException;
  auto parser = std::make_unique<RQPMMLParser>();
  interposed.createParser = Behaviour::PassOn;
  EXPECT_EQ(parser->GetStatus(), Failure(103));
  EXPECT_EQ(rqtest::Parse(*parser, rqtest::PmmlWithFields("")), Failure(103));
  rqtest::RecordingVarList vars;
  EXPECT_EQ(parser->FillVarList(vars, {}, false), Failure(103));
  const int before = interposed.terminated;
  parser.reset();
  EXPECT_EQ(interposed.terminated, before) << "an object without a parser stops nothing when it is destroyed";
}

TEST_F(StartFailure, OtherExceptionsOfTheParsersCreationPassOut) {
  interposed.createParser = Behaviour::ThrowOther;
  RQXMLReadWrite reader;
  std::istringstream stream("<a/>");
  EXPECT_THROW(reader.ParseToDOM(stream), OtherFailure);
  EXPECT_EQ(reader.GetDocument(), nullptr);
  EXPECT_THROW(RQPMMLParser(), OtherFailure);
  interposed.createParser = Behaviour::PassOn;
  std::istringstream again("<a/>");
  EXPECT_EQ(reader.ParseToDOM(again), Ok());
}

}  // namespace
