#pragma once

#include "store/ProfileDocument.h"

namespace store
{

enum class Edit { Unchanged, Indexed, NeedsReparse };

// Changes the document the way WritePrivateProfileString changes its file. Names are trimmed
// and every argument ends at its first NUL. Text that an ANSI file's code page cannot hold
// turns the document into UTF-16LE, every line kept. NeedsReparse: the indexes no longer match
// the lines; parse the document's new bytes.
Edit applyWrite(Document &doc, QStringView section, QStringView key, QStringView value);

} // namespace store
