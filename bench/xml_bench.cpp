// Throughput of the XML tokenizer and of the whole load into a container against expat (the
// baseline) and libxml2's SAX parser, those with empty callbacks, over generated CIM-XML
// documents of 1, 20 and 90 MB and a schema-like one of 1,400 classes (argument 0).
// bench/run_xml.sh runs it with repetitions and prints medians and the ratios to expat.
// Rates are per CPU second (the default), steadier than wall time on a shared machine.
#include "CimXmlGenerator.h"
#include "TCIMXMLParser.h"
#include "TContainer.h"
#include "TXmlParser.h"
#include "TZELException.h"

#include <benchmark/benchmark.h>
#include <expat.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <malloc.h>

#include <map>
#include <memory>
#include <string>

static const int64_t kMB = 1 << 20;
static const unsigned kSchemaClasses = 1400;

// One document per size, made once and shared by all benchmarks; 0 is the schema.
static std::string& Document(int64_t megabytes) {
  static std::map<int64_t, std::string> documents;
  std::string& document = documents[megabytes];
  if (document.empty())
    document = megabytes == 0 ? ZelGenerateCimXmlSchema(kSchemaClasses)
                              : ZelGenerateCimXml(static_cast<size_t>(megabytes * kMB));
  return document;
}

namespace {
class TEmptyParser : public TXmlParser {
public:
  void StartElement(const char*, std::map<std::string, std::string>&) override {}
  void EndElement(const char*) override {}
  void processingInstruction(const char*, const char*) override {}
  void characters(const char*, unsigned int) override {}
  void notationDecl(const char*, const char*, const char*) override {}
  void FatalError(const char*) override { fFailed = true; }
  bool fFailed = false;
};
}  // namespace

// (a) The tokenizer alone. It works in place, so it gets its own copy of the document; the
// only lasting change, lower-cased attribute names, is the same on every pass.
static void BM_TXmlParser(benchmark::State& state) {
  std::string buffer = Document(state.range(0));
  for (auto _ : state) {
    TEmptyParser parser;
    parser.Parse(&buffer[0]);
    if (parser.fFailed)
      state.SkipWithError("the tokenizer rejected the document");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(buffer.size()));
}

// (b) The whole load of the in-memory document into a fresh container: tokenizer, parse
// states and the object model. Taking the container down is not timed. The allocator then
// holds the previous container's blocks on its free lists, scattered, and the next load walks
// them; with trim set, the heap is trimmed while paused, as a process that did not just free
// an equal container would find it.
static void LoadLoop(benchmark::State& state, bool trim) {
  std::string buffer = Document(state.range(0));
  for (auto _ : state) {
    std::unique_ptr<TContainer> container(new TContainer);
    TCIMXMLParser parser(container.get());
    try {
      parser.Parse(&buffer[0]);
    } catch (TZELException const& e) {
      state.SkipWithError(e.what());
    }
    state.PauseTiming();
    container.reset();
    if (trim)
      malloc_trim(0);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(buffer.size()));
}

static void BM_ContainerLoad(benchmark::State& state) { LoadLoop(state, false); }
static void BM_ContainerLoadTrimmed(benchmark::State& state) { LoadLoop(state, true); }

static void StartIgnored(void*, const XML_Char*, const XML_Char**) {}
static void EndIgnored(void*, const XML_Char*) {}
static void TextIgnored(void*, const XML_Char*, int) {}
static void InstructionIgnored(void*, const XML_Char*, const XML_Char*) {}

// (c) The baseline: expat with the same empty callbacks.
static void BM_Expat(benchmark::State& state) {
  std::string const& document = Document(state.range(0));
  for (auto _ : state) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(parser, StartIgnored, EndIgnored);
    XML_SetCharacterDataHandler(parser, TextIgnored);
    XML_SetProcessingInstructionHandler(parser, InstructionIgnored);
    if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), /*isFinal=*/1) !=
        XML_STATUS_OK)
      state.SkipWithError("expat rejected the document");
    XML_ParserFree(parser);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(document.size()));
}

static void StartNsIgnored(void*, const xmlChar*, const xmlChar*, const xmlChar*, int,
                           const xmlChar**, int, int, const xmlChar**) {}
static void EndNsIgnored(void*, const xmlChar*, const xmlChar*, const xmlChar*) {}
static void CharactersIgnored(void*, const xmlChar*, int) {}

// A second reference: libxml2's SAX2 parser with empty callbacks.
static void BM_LibXml2Sax(benchmark::State& state) {
  std::string const& document = Document(state.range(0));
  xmlSAXHandler handler = {};
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = StartNsIgnored;
  handler.endElementNs = EndNsIgnored;
  handler.characters = CharactersIgnored;
  handler.ignorableWhitespace = CharactersIgnored;
  for (auto _ : state) {
    xmlParserCtxtPtr context =
        xmlCreateMemoryParserCtxt(document.data(), static_cast<int>(document.size()));
    xmlSAXHandlerPtr own = context->sax;
    context->sax = &handler;
    context->userData = nullptr;
    xmlCtxtUseOptions(context, XML_PARSE_HUGE);
    xmlParseDocument(context);
    if (!context->wellFormed)
      state.SkipWithError("libxml2 rejected the document");
    context->sax = own;
    xmlFreeParserCtxt(context);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(document.size()));
}

#define ZEL_XML_SIZES Arg(0)->Arg(1)->Arg(20)->Arg(90)->Unit(benchmark::kMillisecond)
BENCHMARK(BM_TXmlParser)->ZEL_XML_SIZES;
BENCHMARK(BM_ContainerLoad)->ZEL_XML_SIZES;
BENCHMARK(BM_ContainerLoadTrimmed)->ZEL_XML_SIZES;
BENCHMARK(BM_Expat)->ZEL_XML_SIZES;
BENCHMARK(BM_LibXml2Sax)->ZEL_XML_SIZES;

BENCHMARK_MAIN();
