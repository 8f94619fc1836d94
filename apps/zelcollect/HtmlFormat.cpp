// The inventory as one self-contained HTML page: the summary, a table of contents, and
// each class as a table with units and mapped values; large classes folded with a filter.
#include "HtmlFormat.h"

#include "Format.h"
#include "Inventory.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMValue.h"

namespace zelcollect {

static const char kStyle[] =
    "body{font:14px/1.4 sans-serif;margin:1.5em;color:#222;background:#fff}"
    "h1{font-size:1.6em;margin:0 0 .5em}h2{font-size:1.2em;margin:1.5em 0 .3em}"
    "table{border-collapse:collapse;margin:.3em 0}"
    "th,td{border:1px solid #ccc;padding:.2em .5em;text-align:left;vertical-align:top}"
    "thead th{background:#e8eef6}tbody th{background:#f6f6f6;font-weight:normal}"
    "table.summary th{background:#e8eef6}.unit{font-weight:normal;color:#666;font-size:.85em}"
    "td.null{color:#999}td[title]{text-decoration:underline dotted}"
    "p.about{color:#555;margin:0}nav ol{columns:3;margin:.3em 0}"
    "input.filter{margin:.3em 0;padding:.2em;width:20em}"
    "details>summary{cursor:pointer;color:#036}";

// Fills the filter boxes from "#filter=TEXT" and hides the rows that do not contain the text.
static const char kScript[] =
    "(function(){"
    "function apply(box){var text=box.value.toLowerCase();"
    "var rows=box.nextElementSibling.querySelectorAll('tbody tr');"
    "for(var i=0;i<rows.length;i++)"
    "rows[i].hidden=text!==''&&rows[i].textContent.toLowerCase().indexOf(text)<0;}"
    "var boxes=document.querySelectorAll('input.filter');"
    "var wanted=location.hash.indexOf('#filter=')===0?"
    "decodeURIComponent(location.hash.slice(8)):'';"
    "for(var i=0;i<boxes.length;i++){"
    "boxes[i].addEventListener('input',function(e){apply(e.target);});"
    "if(wanted){boxes[i].value=wanted;apply(boxes[i]);"
    "boxes[i].closest('details').open=true;}}"
    "document.body.setAttribute('data-ready','yes');"
    "})();";

std::string HtmlEscape(const std::string& text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (char c : text) {
    switch (c) {
    case '&':
      escaped += "&amp;";
      break;
    case '<':
      escaped += "&lt;";
      break;
    case '>':
      escaped += "&gt;";
      break;
    case '"':
      escaped += "&quot;";
      break;
    default:
      escaped += c;
    }
  }
  return escaped;
}

void WriteHtmlPage(std::ostream& out, const std::string& title,
                   const std::function<void(std::ostream&)>& body) {
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      << "<meta name=\"viewport\" content=\"width=device-width\">\n"
      << "<title>" << HtmlEscape(title) << "</title>\n<style>" << kStyle << "</style>\n"
      << "</head>\n<body>\n<h1>" << HtmlEscape(title) << "</h1>\n";
  body(out);
  out << "<script>" << kScript << "</script>\n</body>\n</html>\n";
}

// Anchors name classes; CIM names are letters, digits and underscores already.
static std::string Anchor(const TCIMClass& cls) { return "class-" + cls.GetName(); }

static void WriteCell(std::ostream& out, const TCIMProperty* property) {
  if (!property || property->GetValue().IsNull()) {
    out << "<td class=\"null\">" << kNullText << "</td>";
    return;
  }
  out << "<td";
  if (HasValueMap(*property)) // the code behind the mapped text
    out << " title=\"" << HtmlEscape(property->GetValue().ToString(10)) << "\"";
  out << ">" << HtmlEscape(DisplayText(*property)) << "</td>";
}

static void WriteClass(std::ostream& out, TCIMClass& cls, const TPresentation& how) {
  std::vector<TCIMInstance*> instances = cls.EnumerateInstances(false);
  std::vector<TCIMPropertyDecl*> columns;
  for (TCIMPropertyDecl* decl : cls.EnumeratePropertyDecls())
    if (!IsBookkeeping(decl->GetName()))
      columns.push_back(decl);

  out << "<section class=\"class\" id=\"" << Anchor(cls) << "\">\n<h2>" << cls.GetName()
      << "</h2>\n<p class=\"about\">" << instances.size()
      << (instances.size() == 1 ? " instance" : " instances");
  std::string plugin = QualifierText(cls, "PLUGINNAME");
  if (!plugin.empty())
    out << ", plugin " << HtmlEscape(plugin) << " " << HtmlEscape(QualifierText(cls, "PLUGINVERSION"));
  out << "</p>\n";
  bool folded = !how.ShowsWhole(cls.GetName(), instances.size());
  if (folded)
    out << "<details><summary>Show the " << instances.size() << " instances</summary>\n"
        << "<input class=\"filter\" type=\"search\" placeholder=\"Filter\" aria-label=\"Filter "
        << cls.GetName() << "\">";
  out << "<div class=\"foldable\"><table>\n<thead><tr><th>Instance</th>";
  for (TCIMPropertyDecl* decl : columns) {
    out << "<th>" << HtmlEscape(decl->GetName());
    TCIMQualifier* units = decl->FindQualifier("UNITS");
    if (units && !units->GetValue().IsNull())
      out << "<br><span class=\"unit\">" << HtmlEscape(units->GetValue()) << "</span>";
    out << "</th>";
  }
  out << "</tr></thead>\n<tbody>\n";
  for (TCIMInstance* instance : instances) {
    out << "<tr><th>" << HtmlEscape(InstanceTitle(*instance)) << "</th>";
    for (TCIMPropertyDecl* decl : columns)
      WriteCell(out, instance->FindProperty(decl->GetName()));
    out << "</tr>\n";
  }
  out << "</tbody></table></div>\n" << (folded ? "</details>\n" : "") << "</section>\n";
}

void WriteHtml(std::ostream& out, const TInventory& inventory, const TPresentation& how) {
  std::optional<std::string> name = inventory.Identity("name");
  std::string title = "Inventory of " + name.value_or("an unnamed system") +
                      (how.fRedacted ? " (redacted)" : "");
  WriteHtmlPage(out, title, [&](std::ostream& page) {
    page << "<section id=\"summary\"><h2>Summary</h2>\n<table class=\"summary\">\n";
    for (const TSummaryLine& line : inventory.Summary())
      page << "<tr><th>" << HtmlEscape(line.fLabel) << "</th><td>" << HtmlEscape(line.fText)
           << "</td></tr>\n";
    page << "</table></section>\n<nav id=\"contents\"><h2>Contents</h2><ol>\n";
    for (TCIMClass* cls : inventory.GetClasses())
      page << "<li><a href=\"#" << Anchor(*cls) << "\">" << cls->GetName() << "</a> ("
           << cls->EnumerateInstances(false).size() << ")</li>\n";
    page << "</ol></nav>\n";
    for (TCIMClass* cls : inventory.GetClasses())
      WriteClass(page, *cls, how);
  });
}

} // namespace zelcollect
