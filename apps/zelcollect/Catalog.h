// The plugins that loaded and the classes they collect: what --list prints, and how the
// class names of -c and -x are read.
#ifndef ZELCOLLECT_CATALOG_H
#define ZELCOLLECT_CATALOG_H

#include <ostream>
#include <string>
#include <vector>

class IPlugin;
class TCIMClass;
class TContainer;

namespace zelcollect {

struct TCatalogPlugin {
  IPlugin* fPlugin = nullptr;
  std::string fName;
  std::string fVersion;
  std::string fPath;                ///< its library, for messages
  std::vector<TCIMClass*> fClasses; ///< those it collects: not abstract, not DONTCOLLECT
};

class TCatalog {
public:
  explicit TCatalog(TContainer& schema) : fSchema(schema) {}

  /// A plugin that loaded and collects; in load order.
  void Add(IPlugin* plugin, const std::string& name, const std::string& version,
           const std::string& path, const std::vector<TCIMClass*>& declared);
  const std::vector<TCatalogPlugin>& GetPlugins() const { return fPlugins; }

  /// The class names to collect for -c and -x; empty means every class. Names are read in
  /// any case; a superclass stands for its collectable subclasses; an association brings
  /// the classes at its ends. Throws TUsageError for a name that is not a class (with the
  /// close matches) or that nothing collects, and when nothing is left.
  std::vector<std::string> Select(const std::vector<std::string>& classes,
                                  const std::vector<std::string>& excluded) const;

  /// --list: every plugin with its version, library and classes, then every collectable
  /// class with its plugin.
  void Print(std::ostream& out) const;

private:
  const TCatalogPlugin* PluginOf(const TCIMClass* cls) const;
  std::vector<TCIMClass*> Resolve(const std::string& name) const;
  std::vector<TCIMClass*> Ends(const TCIMClass& association) const;

  TContainer& fSchema;
  std::vector<TCatalogPlugin> fPlugins;
};

} // namespace zelcollect

#endif
