// Why something failed, in the words of the editor's user. The readers and writers below speak English, as
// the terminal does.
#pragma once
#include <string>

/// Of errno.
std::string ReasonOf(int error);

/// A message of a reader or writer, about a path or without it, as its reason in Chinese. What is not known
/// here is only said to be wrong, with the place in the file as far as that is known.
std::string ReasonInChinese(const std::string& message, const std::string& path);

/// The same for a message that names its file itself: "NAME: reason".
std::string MessageInChinese(const std::string& message);
