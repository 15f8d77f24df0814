#pragma once

#include <string>

namespace conduit {

enum class DocumentKind {
  Page,    ///< was laid on the window
  Swipe,   ///< gave its data without that, as a card does that is swiped
  Unread,  ///< was laid on the window, and gave nothing because of an error
};

/// A page or a swiped card. DocumentTracker says where one begins and ends.
struct Document {
  int number = 0;           ///< counts those that gave data, from 1; 0 before the data begins
  std::string source = {};  ///< the reader's name for it, "a.png"; empty without its log
  bool laidDown = false;    ///< on the window, rather than swiped
  bool dataOpen = false;    ///< between BeginData and EndData
  bool gaveItems = false;   ///< or began to give data
  bool failed = false;      ///< an error came while it lay on the window

  DocumentKind Kind() const {
    if (!laidDown) {
      return DocumentKind::Swipe;
    }
    return failed && number == 0 ? DocumentKind::Unread : DocumentKind::Page;
  }
};

/// How many documents were laid on the window, and how many of them are Unread.
struct PagesCounted {
  int unread = 0;
  int all = 0;

  std::string Text() const {
    return std::to_string(unread) + " of " + std::to_string(all) + " could not be read";
  }
};

}  // namespace conduit
