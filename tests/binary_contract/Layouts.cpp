// Makes a compiler lay out the table of every interface, which a call through one
// needs, so that it prints them. The offsets of the records are proven by their
// headers, for whatever compiler takes them.
#include <conduit/HaldenReaderHighLevelAPI.h>
#include <conduit/ModuleEntry.h>
#include <conduit/ReaderAamvaData.h>
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderCodelineData.h>
#include <conduit/ReaderSwipeData.h>
#include <conduit/ResultCode.h>

namespace conduit {

void LayOut(IModule& module, IInputModule& inputModule, IModuleLogger& logger,
            IInputModuleHost& host, IStringMap& map) {
  module.SetParameter("", "");
  inputModule.Initialise();
  logger.Log(0, "", "");
  host.BeginData();
  map.RemoveAll();
}

}  // namespace conduit
