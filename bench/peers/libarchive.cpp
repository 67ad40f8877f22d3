// LZW with 16 bits as the library's: the filter of .Z files around one raw entry in memory.
// SPDX-License-Identifier: MIT
#include <archive.h>
#include <archive_entry.h>

#include "../codec.h"

namespace {

using kxbench::Bytes;

std::size_t encode(const Bytes& plain, Bytes& packed) {
  packed.resize(2 * plain.size());
  std::size_t used = 0;
  archive* const file = archive_write_new();
  archive_write_add_filter_compress(file);
  archive_write_set_format_raw(file);
  archive_write_set_bytes_in_last_block(file, 1);  // no padding
  archive_write_open_memory(file, packed.data(), packed.size(), &used);
  archive_entry* const entry = archive_entry_new();
  archive_entry_set_filetype(entry, AE_IFREG);
  archive_write_header(file, entry);
  archive_write_data(file, plain.data(), plain.size());
  archive_entry_free(entry);
  archive_write_close(file);
  archive_write_free(file);
  return used;
}

void decode(const Bytes& packed, Bytes& plain) {
  archive* const file = archive_read_new();
  archive_read_support_filter_compress(file);
  archive_read_support_format_raw(file);
  archive_read_open_memory(file, packed.data(), packed.size());
  archive_entry* entry = nullptr;
  archive_read_next_header(file, &entry);
  archive_read_data(file, plain.data(), kxbench::streamBytes);
  archive_read_free(file);
}

const kxbench::Group peer([](std::vector<kxbench::Row>& rows) {
  kxbench::addCoder(rows, "lzw", {"libarchive", encode, decode});
});

}  // namespace
