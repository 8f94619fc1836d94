// The differences as CIM-XML: one KAPLA_PropertyChange (declared in the bundled schema) per
// property that differs, in a document the library reads back.
#include "DiffFormat.h"

#include "CoreSession.h"
#include "Errors.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMXMLWriter.h"
#include "TContainer.h"
#include "TZELException.h"

#include <memory>

namespace zelcollect {

static void AddChange(TCIMClass& cls, const TInstanceDifference& instance,
                      const TPropertyDifference& property) {
  static const char* const kChanges[] = {"added", "removed", "changed"};
  std::unique_ptr<TCIMInstance> change(cls.GetContainer().AllocateInstance(&cls));
  const TCIMProperty* named = property.fNew ? property.fNew : property.fOld;
  change->SetPropertyValue("InstancePath", instance.fPath);
  change->SetPropertyValue("PropertyName", named->GetName());
  change->SetPropertyValue("ClassName", instance.fClassName);
  change->SetPropertyValue("Change", kChanges[static_cast<int>(instance.fChange)]);
  TSide old = OldSide(property), now = NewSide(property, instance.fChange);
  if (old.fPresent)
    change->SetPropertyValue("OldValue", old.fText);
  if (now.fPresent)
    change->SetPropertyValue("NewValue", now.fText);
  change->AddToContainer();
  change.release();
}

void WriteDifferenceXml(std::ostream& out, const TDifference& difference) {
  std::filesystem::path schema = TBundle::Find().fSchemaDir;
  TContainer changes;
  try {
    changes.PopulateContainerFromFile((schema / "01-qualifiers.xml").string());
    changes.PopulateContainerFromFile((schema / "03-differences.xml").string());
  } catch (TZELException& e) {
    throw TSetUpError("cannot load the schema of differences from " + schema.string() + ": " +
                      e.what());
  }
  TCIMClass& cls = *changes.GetClass("KAPLA_PropertyChange");
  for (const TInstanceDifference& instance : difference.fInstances)
    for (const TPropertyDifference& property : instance.fProperties)
      AddChange(cls, instance, property);
  out << TCIMXMLWriter::Write(changes, TCIMXMLWriter::eClassesWithInstances);
}

} // namespace zelcollect
