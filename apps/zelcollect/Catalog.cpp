// Plugins and classes by name.
#include "Catalog.h"

#include "Difference.h"
#include "Errors.h"

#include "TCIMClass.h"
#include "TCIMPropertyDecl.h"
#include "TCIMValue.h"
#include "TContainer.h"
#include "TZELException.h"

#include <algorithm>
#include <iomanip>
#include <set>

namespace zelcollect {

static bool Collectable(const TCIMClass& cls) {
  return !cls.IsAbstract() && !QualifierIsTrue(cls.FindQualifier("DONTCOLLECT"));
}

static size_t Distance(const std::string& a, const std::string& b) {
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j)
    row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      size_t above = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])});
      diagonal = above;
    }
  }
  return row[b.size()];
}

static std::string NameList(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names)
    text += (text.empty() ? "" : ", ") + name;
  return text;
}

void TCatalog::Add(IPlugin* plugin, const std::string& name, const std::string& version,
                   const std::string& path, const std::vector<TCIMClass*>& declared) {
  TCatalogPlugin entry{plugin, name, version, path, {}};
  for (TCIMClass* cls : declared)
    if (Collectable(*cls))
      entry.fClasses.push_back(cls);
  fPlugins.push_back(entry);
}

const TCatalogPlugin* TCatalog::PluginOf(const TCIMClass* cls) const {
  for (const TCatalogPlugin& plugin : fPlugins)
    if (std::find(plugin.fClasses.begin(), plugin.fClasses.end(), cls) != plugin.fClasses.end())
      return &plugin;
  return nullptr;
}

// The collectable classes a name stands for: the class and its subclasses.
std::vector<TCIMClass*> TCatalog::Resolve(const std::string& name) const {
  TCIMClass* cls = nullptr;
  try {
    cls = fSchema.FindClass(name);
  } catch (TZELException&) { // not even a CIM name
  }
  if (!cls || name.empty()) {
    std::vector<std::pair<size_t, std::string>> close;
    for (TCIMClass* known : fSchema.GetRootClass()->EnumerateSubClasses(true)) {
      std::string candidate = LowerCase(known->GetName()), wanted = LowerCase(name);
      size_t distance = Distance(candidate, wanted);
      if (distance <= std::max<size_t>(2, wanted.size() / 4) ||
          (wanted.size() >= 4 && candidate.find(wanted) != std::string::npos))
        close.push_back({distance, known->GetName()});
    }
    std::sort(close.begin(), close.end());
    std::vector<std::string> names;
    for (size_t i = 0; i < close.size() && i < 5; ++i)
      names.push_back(close[i].second);
    throw TUsageError("unknown class '" + name + "' (" +
                      (names.empty() ? "zelcollect --list shows the classes"
                                     : "close matches: " + NameList(names)) +
                      ")");
  }
  std::vector<TCIMClass*> found;
  for (const TCatalogPlugin& plugin : fPlugins)
    for (TCIMClass* candidate : plugin.fClasses)
      if (candidate == cls || candidate->IsSubclassOf(cls))
        found.push_back(candidate);
  if (found.empty())
    throw TUsageError("no plugin collects class '" + cls->GetName() +
                      "' (zelcollect --list shows the classes)");
  return found;
}

// The classes an association's references point at: those of its own plugin when it
// collects some, else every collectable one.
std::vector<TCIMClass*> TCatalog::Ends(const TCIMClass& association) const {
  const TCatalogPlugin* own = PluginOf(&association);
  std::vector<TCIMClass*> ends;
  for (TCIMPropertyDecl* decl : association.EnumeratePropertyDecls()) {
    TCIMClass* referenced = decl->GetValue().GetReferencedClass();
    if (decl->GetType() != TCIMValue::TCIMType::kReference || !referenced)
      continue;
    std::vector<TCIMClass*> mine, anyone;
    for (const TCatalogPlugin& plugin : fPlugins)
      for (TCIMClass* cls : plugin.fClasses)
        if (!cls->IsAssociation() && (cls == referenced || cls->IsSubclassOf(referenced)))
          (&plugin == own ? mine : anyone).push_back(cls);
    const std::vector<TCIMClass*>& chosen = mine.empty() ? anyone : mine;
    ends.insert(ends.end(), chosen.begin(), chosen.end());
  }
  return ends;
}

std::vector<std::string> TCatalog::Select(const std::vector<std::string>& classes,
                                          const std::vector<std::string>& excluded) const {
  if (classes.empty() && excluded.empty())
    return {};
  std::set<std::string> chosen;
  if (classes.empty()) {
    for (const TCatalogPlugin& plugin : fPlugins)
      for (TCIMClass* cls : plugin.fClasses)
        chosen.insert(cls->GetName());
  }
  for (const std::string& name : classes)
    for (TCIMClass* cls : Resolve(name)) {
      chosen.insert(cls->GetName());
      if (cls->IsAssociation())
        for (TCIMClass* end : Ends(*cls))
          chosen.insert(end->GetName());
    }
  for (const std::string& name : excluded)
    for (TCIMClass* cls : Resolve(name))
      chosen.erase(cls->GetName());
  if (chosen.empty())
    throw TUsageError("no class is left to collect");
  return std::vector<std::string>(chosen.begin(), chosen.end());
}

void TCatalog::Print(std::ostream& out) const {
  out << "Plugins\n";
  for (const TCatalogPlugin& plugin : fPlugins) {
    out << "  " << std::left << std::setw(16) << plugin.fName << " " << std::setw(8)
        << plugin.fVersion << " " << plugin.fPath << "\n";
    std::vector<std::string> names;
    for (TCIMClass* cls : plugin.fClasses)
      names.push_back(cls->GetName());
    out << "  " << std::string(26, ' ') << NameList(names) << "\n";
  }
  std::vector<std::pair<std::string, std::string>> classes;
  for (const TCatalogPlugin& plugin : fPlugins)
    for (TCIMClass* cls : plugin.fClasses)
      classes.push_back({cls->GetName(), plugin.fName});
  std::sort(classes.begin(), classes.end());
  out << "\nClasses\n";
  for (const auto& entry : classes)
    out << "  " << std::left << std::setw(40) << entry.first << " " << entry.second << "\n";
}

} // namespace zelcollect
