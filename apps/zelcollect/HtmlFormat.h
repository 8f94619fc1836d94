// The HTML report's frame, shared by the inventory page and any other page (a comparison)
// that wants the same look: one self-contained file, no external resource.
#ifndef ZELCOLLECT_HTMLFORMAT_H
#define ZELCOLLECT_HTMLFORMAT_H

#include <functional>
#include <ostream>
#include <string>

namespace zelcollect {

/// Text safe inside elements and quoted attributes.
std::string HtmlEscape(const std::string& text);

/// A whole page: head with the style and the filter script, a heading, then what body
/// writes. A table inside a <div class="foldable"> after an <input class="filter"> is
/// filtered by that box; "#filter=TEXT" in the address fills every box on load.
void WriteHtmlPage(std::ostream& out, const std::string& title,
                   const std::function<void(std::ostream&)>& body);

} // namespace zelcollect

#endif
