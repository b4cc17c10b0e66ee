#include "model/InitArray.h"

namespace ztv {

namespace InitArray {

std::vector<QString> Texts(std::initializer_list<const char *> values) {
    std::vector<QString> texts;
    texts.reserve(values.size());
    for (const char *value : values) {
        texts.push_back(QString::fromLatin1(value));
    }
    return texts;
}

std::vector<std::int16_t> Integers(std::initializer_list<std::int16_t> values) {
    return values;
}

} // namespace InitArray

} // namespace ztv
