// placeholder until the old calendar lands
