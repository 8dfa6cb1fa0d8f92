<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>CalibrationDialog</name>
    <message>
        <source>Known length of the reference</source>
        <translation>Longueur connue de la référence</translation>
    </message>
    <message>
        <source>Pixels per unit</source>
        <translation>Pixels par unité</translation>
    </message>
    <message>
        <source>Calibration</source>
        <translation>Étalonnage</translation>
    </message>
    <message>
        <source>Name, e.g. the objective</source>
        <translation>Nom, par exemple l’objectif</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>Utiliser</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Reference</source>
        <translation>Référence</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>Unité</translation>
    </message>
    <message>
        <source>Decimals</source>
        <translation>Décimales</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Résultat</translation>
    </message>
    <message>
        <source>Saved calibrations</source>
        <translation>Étalonnages enregistrés</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Enregistrer sous</translation>
    </message>
    <message>
        <source>Width of %1</source>
        <translation>Largeur de %1</translation>
    </message>
    <message>
        <source>Height of %1</source>
        <translation>Hauteur de %1</translation>
    </message>
    <message>
        <source>Diagonal of %1</source>
        <translation>Diagonale de %1</translation>
    </message>
    <message>
        <source>Length of %1</source>
        <translation>Longueur de %1</translation>
    </message>
    <message>
        <source>%1: %2 pixels</source>
        <translation>%1 : %2 pixels</translation>
    </message>
    <message>
        <source>1 pixel = %1 %2, %3 pixels per %2</source>
        <translation>1 pixel = %1 %2, %3 pixels par %2</translation>
    </message>
    <message>
        <source>Enter a length and a unit</source>
        <translation>Entrez une longueur et une unité</translation>
    </message>
</context>
<context>
    <name>FilterCatalogue</name>
    <message>
        <source>Brightness</source>
        <translation>Luminosité</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Contraste</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>Gamma</translation>
    </message>
    <message>
        <source>Colorize</source>
        <translation>Coloriser</translation>
    </message>
    <message>
        <source>Auto contrast</source>
        <translation>Contraste automatique</translation>
    </message>
    <message>
        <source>Equalize</source>
        <translation>Égaliser</translation>
    </message>
    <message>
        <source>Desaturate</source>
        <translation>Désaturer</translation>
    </message>
    <message>
        <source>Grayscale</source>
        <translation>Niveaux de gris</translation>
    </message>
    <message>
        <source>Blur</source>
        <translation>Flou</translation>
    </message>
    <message>
        <source>Sharpen</source>
        <translation>Netteté</translation>
    </message>
    <message>
        <source>Edges</source>
        <translation>Contours</translation>
    </message>
    <message>
        <source>Despeckle</source>
        <translation>Réduire le bruit</translation>
    </message>
    <message>
        <source>Antialias</source>
        <translation>Anticrénelage</translation>
    </message>
    <message>
        <source>Gaussian blur</source>
        <translation>Flou gaussien</translation>
    </message>
    <message>
        <source>Gaussian sharpen</source>
        <translation>Netteté gaussienne</translation>
    </message>
    <message>
        <source>Emboss</source>
        <translation>Relief</translation>
    </message>
    <message>
        <source>Charcoal</source>
        <translation>Fusain</translation>
    </message>
    <message>
        <source>Swirl</source>
        <translation>Tourbillon</translation>
    </message>
    <message>
        <source>Implode</source>
        <translation>Implosion</translation>
    </message>
</context>
<context>
    <name>FilterDialog</name>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>&amp;Open…</source>
        <translation>&amp;Ouvrir…</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <source>Save &amp;as…</source>
        <translation>Enregistrer &amp;sous…</translation>
    </message>
    <message>
        <source>&amp;Export drawing…</source>
        <translation>E&amp;xporter le dessin…</translation>
    </message>
    <message>
        <source>Ctrl+E</source>
        <translation>Ctrl+E</translation>
    </message>
    <message>
        <source>Export &amp;measures…</source>
        <translation>Exporter les &amp;mesures…</translation>
    </message>
    <message>
        <source>Ctrl+Shift+E</source>
        <translation>Ctrl+Shift+E</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <source>Ctrl+Y</source>
        <translation>Ctrl+Y</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Supprimer</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>&amp;Tout sélectionner</translation>
    </message>
    <message>
        <source>Edit &amp;text…</source>
        <translation>Modifier le &amp;texte…</translation>
    </message>
    <message>
        <source>F2</source>
        <translation>F2</translation>
    </message>
    <message>
        <source>&amp;Link text to a measure</source>
        <translation>&amp;Lier le texte à une mesure</translation>
    </message>
    <message>
        <source>Ctrl+L</source>
        <translation>Ctrl+L</translation>
    </message>
    <message>
        <source>Zoom &amp;in</source>
        <translation>Zoom &amp;avant</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>Zoom a&amp;rrière</translation>
    </message>
    <message>
        <source>&amp;Fit to window</source>
        <translation>&amp;Ajuster à la fenêtre</translation>
    </message>
    <message>
        <source>Ctrl+0</source>
        <translation>Ctrl+0</translation>
    </message>
    <message>
        <source>&amp;Actual size</source>
        <translation>Taille &amp;réelle</translation>
    </message>
    <message>
        <source>Ctrl+1</source>
        <translation>Ctrl+1</translation>
    </message>
    <message>
        <source>Label &amp;background</source>
        <translation>&amp;Fond des étiquettes</translation>
    </message>
    <message>
        <source>Ctrl+B</source>
        <translation>Ctrl+B</translation>
    </message>
    <message>
        <source>&amp;Calibrate…</source>
        <translation>É&amp;talonner…</translation>
    </message>
    <message>
        <source>Ctrl+K</source>
        <translation>Ctrl+K</translation>
    </message>
    <message>
        <source>Draw a calibration &amp;rectangle</source>
        <translation>Tracer un &amp;rectangle d’étalonnage</translation>
    </message>
    <message>
        <source>Add a &amp;scale bar</source>
        <translation>Ajouter une &amp;barre d’échelle</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>À &amp;propos</translation>
    </message>
    <message>
        <source>About the viewer</source>
        <translation>À propos de la visionneuse</translation>
    </message>
    <message>
        <source>The GraphicsObjects viewer measures and annotates images with the GraphicsObjects library (%1).</source>
        <translation>La visionneuse GraphicsObjects mesure et annote les images avec la bibliothèque GraphicsObjects (%1).</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>Fichiers &amp;récents</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Édition</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <source>&amp;Image</source>
        <translation>&amp;Image</translation>
    </message>
    <message>
        <source>&amp;Filters</source>
        <translation>&amp;Filtres</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>Ai&amp;de</translation>
    </message>
    <message>
        <source>Vickers test &amp;load</source>
        <translation>&amp;Charge d’essai Vickers</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>x %1 %3, y %2 %3</source>
        <translation>x %1 %3, y %2 %3</translation>
    </message>
    <message>
        <source>(%1, %2) value %3</source>
        <translation>(%1, %2) valeur %3</translation>
    </message>
    <message>
        <source>(%1, %2) RGB %3, %4, %5</source>
        <translation>(%1, %2) RVB %3, %4, %5</translation>
    </message>
    <message>
        <source>untitled</source>
        <translation>sans titre</translation>
    </message>
    <message>
        <source>%1[*] — GraphicsObjects viewer</source>
        <translation>%1[*] — visionneuse GraphicsObjects</translation>
    </message>
    <message>
        <source>Not opened</source>
        <translation>Non ouvert</translation>
    </message>
    <message>
        <source>%1: no such file</source>
        <translation>%1 : fichier introuvable</translation>
    </message>
    <message>
        <source>%1: %2 x %3 pixels is more than this viewer opens</source>
        <translation>%1 : %2 x %3 pixels, c’est plus que cette visionneuse n’en ouvre</translation>
    </message>
    <message>
        <source>%1: not a picture: %2</source>
        <translation>%1 : ce n’est pas une image : %2</translation>
    </message>
    <message>
        <source>Opened with problems</source>
        <translation>Ouvert avec des problèmes</translation>
    </message>
    <message>
        <source>%1 was opened; what follows was left out or changed:
%2</source>
        <translation>%1 a été ouvert ; ce qui suit a été omis ou modifié :
%2</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>Non enregistré</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>%1 enregistré</translation>
    </message>
    <message>
        <source>Saved</source>
        <translation>Enregistré</translation>
    </message>
    <message>
        <source>the scene is too large for a picture</source>
        <translation>la scène est trop grande pour une image</translation>
    </message>
    <message>
        <source>the picture cannot be written as %1</source>
        <translation>l’image ne peut pas être écrite en %1</translation>
    </message>
    <message>
        <source>no drawing or picture format is known by the extension &quot;%1&quot;</source>
        <translation>aucun format de dessin ou d’image ne porte l’extension « %1 »</translation>
    </message>
    <message>
        <source>Not exported</source>
        <translation>Non exporté</translation>
    </message>
    <message>
        <source>Exported %1</source>
        <translation>%1 exporté</translation>
    </message>
    <message>
        <source>Unsaved changes</source>
        <translation>Modifications non enregistrées</translation>
    </message>
    <message>
        <source>Save the changes to the scene?</source>
        <translation>Enregistrer les modifications de la scène ?</translation>
    </message>
    <message>
        <source>Open an image or a scene</source>
        <translation>Ouvrir une image ou une scène</translation>
    </message>
    <message>
        <source>Images and scenes (*.png *.jpg *.jpeg *.tif *.tiff *.bmp *.xml);;All files (*)</source>
        <translation>Images et scènes (*.png *.jpg *.jpeg *.tif *.tiff *.bmp *.xml);;Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Save the scene</source>
        <translation>Enregistrer la scène</translation>
    </message>
    <message>
        <source>Scene documents (*.xml)</source>
        <translation>Documents de scène (*.xml)</translation>
    </message>
    <message>
        <source>Export the drawing</source>
        <translation>Exporter le dessin</translation>
    </message>
    <message>
        <source>DXF drawing (*.dxf);;PNG picture (*.png);;SVG drawing (*.svg)</source>
        <translation>Dessin DXF (*.dxf);;Image PNG (*.png);;Dessin SVG (*.svg)</translation>
    </message>
    <message>
        <source>Export the measures</source>
        <translation>Exporter les mesures</translation>
    </message>
    <message>
        <source>CSV tables (*.csv)</source>
        <translation>Tableaux CSV (*.csv)</translation>
    </message>
    <message>
        <source>Clear the list</source>
        <translation>Effacer la liste</translation>
    </message>
    <message>
        <source>Edit text</source>
        <translation>Modifier le texte</translation>
    </message>
    <message>
        <source>Click the item whose measure the text should show (Esc cancels)</source>
        <translation>Cliquez sur l’objet dont le texte doit montrer la mesure (Échap annule)</translation>
    </message>
    <message>
        <source>A text follows the measure of a measuring item</source>
        <translation>Un texte suit la mesure d’un objet de mesure</translation>
    </message>
    <message>
        <source>Link %1 to %2</source>
        <translation>Lier %1 à %2</translation>
    </message>
    <message>
        <source>No scale bar</source>
        <translation>Pas de barre d’échelle</translation>
    </message>
    <message>
        <source>A scale bar needs an image or a scene size and a calibration.</source>
        <translation>Une barre d’échelle demande une image ou une taille de scène, et un étalonnage.</translation>
    </message>
    <message>
        <source>Calibrate from this item…</source>
        <translation>Étalonner d’après cet objet…</translation>
    </message>
</context>
<context>
    <name>MeasureNames</name>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Longueur</translation>
    </message>
    <message>
        <source>Breadth</source>
        <translation>Largeur minimale</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Largeur</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Hauteur</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>Distance</translation>
    </message>
    <message>
        <source>Gap</source>
        <translation>Écart</translation>
    </message>
    <message>
        <source>Radius</source>
        <translation>Rayon</translation>
    </message>
    <message>
        <source>Diameter</source>
        <translation>Diamètre</translation>
    </message>
    <message>
        <source>Diagonal</source>
        <translation>Diagonale</translation>
    </message>
    <message>
        <source>Diagonal 1</source>
        <translation>Diagonale 1</translation>
    </message>
    <message>
        <source>Diagonal 2</source>
        <translation>Diagonale 2</translation>
    </message>
    <message>
        <source>Perimeter</source>
        <translation>Périmètre</translation>
    </message>
    <message>
        <source>Area</source>
        <translation>Aire</translation>
    </message>
    <message>
        <source>Angle</source>
        <translation>Angle</translation>
    </message>
    <message>
        <source>Angle to reference</source>
        <translation>Angle à la référence</translation>
    </message>
    <message>
        <source>Supplement</source>
        <translation>Supplément</translation>
    </message>
    <message>
        <source>Reflex angle</source>
        <translation>Angle rentrant</translation>
    </message>
    <message>
        <source>Second arm</source>
        <translation>Second bras</translation>
    </message>
    <message>
        <source>Chord</source>
        <translation>Corde</translation>
    </message>
    <message>
        <source>Crossings</source>
        <translation>Intersections</translation>
    </message>
    <message>
        <source>Tangent length</source>
        <translation>Longueur de tangente</translation>
    </message>
    <message>
        <source>Second tangent</source>
        <translation>Seconde tangente</translation>
    </message>
    <message>
        <source>Bar length</source>
        <translation>Longueur de barre</translation>
    </message>
    <message>
        <source>Magnification</source>
        <translation>Grossissement</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Charge</translation>
    </message>
    <message>
        <source>Hardness</source>
        <translation>Dureté</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
</context>
<context>
    <name>MeasuresDock</name>
    <message>
        <source>Measures</source>
        <translation>Mesures</translation>
    </message>
    <message>
        <source>Comma separated, decimal point (1.5)</source>
        <translation>Séparé par des virgules, point décimal (1.5)</translation>
    </message>
    <message>
        <source>Semicolon separated, decimal comma (1,5)</source>
        <translation>Séparé par des points-virgules, virgule décimale (1,5)</translation>
    </message>
    <message>
        <source>Export CSV…</source>
        <translation>Exporter en CSV…</translation>
    </message>
</context>
<context>
    <name>MeasuresModel</name>
    <message>
        <source>Class</source>
        <translation>Classe</translation>
    </message>
    <message>
        <source>Tool</source>
        <translation>Outil</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Designation</source>
        <translation>Désignation</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Avertissement</translation>
    </message>
    <message>
        <source>%1: cannot write: %2</source>
        <translation>%1 : écriture impossible : %2</translation>
    </message>
</context>
<context>
    <name>NAMES</name>
    <message>
        <source>PointItem</source>
        <translation>Point</translation>
    </message>
    <message>
        <source>AnchorPointItem</source>
        <translation>Point d’ancrage</translation>
    </message>
    <message>
        <source>LineItem</source>
        <translation>Ligne</translation>
    </message>
    <message>
        <source>PolylineItem</source>
        <translation>Polyligne</translation>
    </message>
    <message>
        <source>PolygonItem</source>
        <translation>Polygone</translation>
    </message>
    <message>
        <source>EllipseItem</source>
        <translation>Ellipse</translation>
    </message>
    <message>
        <source>CircleItem</source>
        <translation>Cercle</translation>
    </message>
    <message>
        <source>CirclePItem</source>
        <translation>Cercle par le centre</translation>
    </message>
    <message>
        <source>CirclePointsItem</source>
        <translation>Cercle par points</translation>
    </message>
    <message>
        <source>Circle3PointsItem</source>
        <translation>Cercle par 3 points</translation>
    </message>
    <message>
        <source>ArcPointsItem</source>
        <translation>Arc par points</translation>
    </message>
    <message>
        <source>Arc3PointsItem</source>
        <translation>Arc par 3 points</translation>
    </message>
    <message>
        <source>CurveItem</source>
        <translation>Courbe</translation>
    </message>
    <message>
        <source>RectangleItem</source>
        <translation>Rectangle</translation>
    </message>
    <message>
        <source>CrossItem</source>
        <translation>Croix</translation>
    </message>
    <message>
        <source>LassoItem</source>
        <translation>Lasso</translation>
    </message>
    <message>
        <source>RulerItem</source>
        <translation>Règle</translation>
    </message>
    <message>
        <source>StampItem</source>
        <translation>Barre d’échelle</translation>
    </message>
    <message>
        <source>eTextItem</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>PixmapItem</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>SmileyItem</source>
        <translation>Visage</translation>
    </message>
    <message>
        <source>VideoItem</source>
        <translation>Vidéo</translation>
    </message>
    <message>
        <source>Custom1</source>
        <translation>Rapporteur</translation>
    </message>
    <message>
        <source>CircleNote</source>
        <translation>Loupe</translation>
    </message>
    <message>
        <source>CrossHItem</source>
        <translation>Repère horizontal</translation>
    </message>
    <message>
        <source>CrossVItem</source>
        <translation>Repère vertical</translation>
    </message>
    <message>
        <source>ArrowItem</source>
        <translation>Flèche</translation>
    </message>
    <message>
        <source>Arrow2Item</source>
        <translation>Double flèche</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>Distance</translation>
    </message>
    <message>
        <source>Angle</source>
        <translation>Angle</translation>
    </message>
    <message>
        <source>Circle3</source>
        <translation>Cercle par 3 objets</translation>
    </message>
    <message>
        <source>Projection</source>
        <translation>Projection</translation>
    </message>
    <message>
        <source>Intersection</source>
        <translation>Intersection</translation>
    </message>
    <message>
        <source>Tangent</source>
        <translation>Tangente</translation>
    </message>
</context>
<context>
    <name>SceneUndo</name>
    <message>
        <source>Draw %1</source>
        <translation>Tracer %1</translation>
    </message>
    <message numerus="yes">
        <source>Delete %n item(s)</source>
        <translation>
            <numerusform>Supprimer %n objet</numerusform>
            <numerusform>Supprimer %n objets</numerusform>
        </translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Déplacer</translation>
    </message>
    <message>
        <source>Calibrate</source>
        <translation>Étalonner</translation>
    </message>
</context>
<context>
    <name>ToolPalette</name>
    <message>
        <source>Tools</source>
        <translation>Outils</translation>
    </message>
    <message>
        <source>Draw: %1</source>
        <translation>Tracer : %1</translation>
    </message>
</context>
<context>
    <name>UndoRecorder</name>
    <message>
        <source>Drag %1</source>
        <translation>Déplacer une poignée de %1</translation>
    </message>
</context>
<context>
    <name>VickersLoads</name>
    <message>
        <source>Test load %1 N</source>
        <translation>Charge d’essai %1 N</translation>
    </message>
</context>
</TS>
