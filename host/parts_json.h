// Components beside the net as JSON.
#pragma once
#include "host/json_text.h"

class CGouJianEx;

/// {"type","id","no","tag","status","storey","box"} and what the kind has besides: a text its place, height,
/// angle, colour and letters, a graphics component its primitive and colour, a rider its line, width and
/// outline. Of a kind that has no name "type" is "component". The box is null for what lies nowhere.
Json PartJson(CGouJianEx& part);
