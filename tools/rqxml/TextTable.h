#ifndef RQXML_TOOLS_TEXTTABLE_H
#define RQXML_TOOLS_TEXTTABLE_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace rqtool {

/// A table for people, aligned by columns as shown, not by bytes. Each row is one line; on a terminal that is too
/// narrow for that, the cells of some columns stand on lines of their own beneath it.
class TextTable {
 public:
  /// What happens to a column when the table is wider than the terminal.
  enum class Fit {
    Keep,        ///< it is shown whole
    CutText,     ///< its texts are cut
    ShortenList  ///< its lists are shortened, and end with the number of all items
  };

  /// A column.
  struct Column {
    std::string title{};
    Fit fit = Fit::Keep;
    bool alignRight = false;
    bool optional = false;  ///< left out when all its cells are empty
    std::string beneath{};  ///< title of a cell that stands beneath its row; empty for a column that stays
  };

  /// The items of a list, or one text; UTF-8 that came through Printable, no item empty.
  using Cell = std::vector<std::string>;
  /// One cell for each column.
  using Row = std::vector<Cell>;

  explicit TextTable(std::vector<Column> columns);

  /// Adds a row.
  void AddRow(Row row);

  /// The titles of the columns that are shown.
  std::vector<std::string> Titles() const;

  /// The rows, each with the cells of the columns that are shown.
  std::vector<Row> Rows() const;

  /// The table, fitted into `width` columns as far as it goes; everything shown whole without a width.
  std::string Render(std::optional<std::size_t> width) const;

 private:
  // A column that is shown, and the width of its widest cell or what is left of it.
  struct Slot {
    const Column* column;
    std::size_t index;
    std::size_t width;
  };
  using Slots = std::vector<Slot>;

  Slots MeasureSlots() const;
  static std::optional<std::size_t> FindLimit(const Slots& slots, std::size_t width);
  static std::string RenderHead(const Slots& slots);
  static std::string RenderLine(const Slots& slots, const Row& row);
  static std::string RenderBeneath(const Slots& slots, const Row& row, std::size_t indent, std::size_t width);

  std::vector<Column> fColumns;
  std::vector<Row> fRows;
};

/// `items` with commas between them when that takes `width` columns or fewer; else the first ones that fit, an
/// ellipsis and the number of all items.
std::string ShortenList(const std::vector<std::string>& items, std::size_t width);

}  // namespace rqtool

#endif
