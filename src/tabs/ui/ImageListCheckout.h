#pragma once

#include <QIcon>
#include <QString>

// The pictures that tell a state, by key. Each differs from the others in shape as well as in colour.
namespace ImageListCheckout {

enum class Key { Red, Gray, Green, On, Off };

const QIcon &Picture(Key key);

// The state in a word, for those who don't see the picture.
QString Word(Key key);

} // namespace ImageListCheckout
