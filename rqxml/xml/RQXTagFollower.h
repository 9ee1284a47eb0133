#ifndef RQXML_XML_RQXTAGFOLLOWER_H
#define RQXML_XML_RQXTAGFOLLOWER_H

#include <cstddef>
#include <string>
#include <string_view>

namespace RQXPrsUtil {

/// Follows the markup of an input, piece by piece, just far enough to know how many attributes the start tag has that
/// a piece ends in. Tags that end within a piece cost next to nothing.
class RQXTagFollower {
 public:
  /// A new input starts.
  void Restart() { *this = RQXTagFollower(); }

  /// The next piece of the input, as RQXMarkupText shows it.
  void Add(std::string_view text);

  /// How many attributes the start tag has so far that the input has come to; 0 outside of tags. Those in pieces that
  /// held the tag's end are not counted.
  std::size_t GetAttributes() const { return fPlace == Place::Tag ? fAttributes : 0; }

 private:
  enum class Place {
    Elsewhere,  // outside of all markup, or in a tag that is not followed
    Opening,    // behind a '<' that may open anything
    Tag,        // inside a start tag
    Skipped     // in a comment, character data or a processing instruction
  };
  std::string_view TakeOutside(std::string_view text);
  std::string_view TakeOpening(std::string_view text);
  std::string_view TakeSkipped(std::string_view text);
  void FollowTag(std::string_view text);
  void Skip(std::string_view terminator);

  Place fPlace = Place::Elsewhere;
  std::string fOpening;          // what came behind the '<'
  std::string_view fTerminator;  // of what is being skipped
  std::size_t fMatched = 0;      // how much of it came last
  char fQuote = 0;               // of the attribute value being passed
  std::size_t fAttributes = 0;
};

}  // namespace RQXPrsUtil

#endif
