// Tokenizer: uses the tokenizer that FTS5 registers on the connection.
#include "catalog/tokenizer.h"

#include "base/error.h"

namespace brindlehum {

Tokenizer::Tokenizer(const Database& database) {
    fts5_api* api = nullptr;
    Statement select(database, "SELECT fts5(?)");
    if (select.ok()) {
        select.setPointer(1, &api, "fts5_api_ptr");
        select.step();
    }
    void* context = nullptr;
    const char* options[] = {"remove_diacritics", "2"};
    const bool found = api != nullptr && api->xFindTokenizer(api, "unicode61", &context, &tokenizer_) == SQLITE_OK &&
                       tokenizer_.xCreate(context, options, 2, &instance_) == SQLITE_OK;
    if (!found) { throw Error(ErrorKind::catalog, "no full-text search in this SQLite"); }
}

Tokenizer::~Tokenizer() {
    tokenizer_.xDelete(instance_);
}

}  // namespace brindlehum
