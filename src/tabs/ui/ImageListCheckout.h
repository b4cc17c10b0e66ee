#pragma once

#include <QIcon>
#include <QString>

namespace ztv {

// The pictures of states, by key. Each differs from the others in shape as well as in colour.
namespace ImageListCheckout {

enum class Key { Red, Gray, Green, On, Off };

const QIcon &Picture(Key key);

// Returns the state as a word, for users who don't see the picture.
QString Word(Key key);

} // namespace ImageListCheckout

} // namespace ztv
